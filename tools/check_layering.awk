# check_layering.awk cmake/rooms.cmake SOURCE...: see check_layering.sh.

BEGIN {
  # Rooms that may include headers of the operating system and ask which one it is: the seams'
  # other side, and windows.
  systemRooms = "^platform/.|^app/win32$|^win32$|^posix$"
  # Libraries that a room may include besides: whole folders, or one header.
  library["cli CLI"] = library["cli nlohmann"] = 1
  library["files zlib.h"] = 1
  library["geo GeographicLib"] = library["formats minizip"] = library["formats nlohmann"] = 1
  # Rooms that use the numbers of the resources, with those inside them.
  resourceRooms = "^(base|app|win32)(/|$)"
  platformMacro = "(^|[^A-Za-z0-9_])(_?_?(WIN32|WIN64|linux|unix|APPLE|MINGW32|MINGW64|CYGWIN|ANDROID" \
    "|FreeBSD|OpenBSD|NetBSD|GLIBC|GNU_SOURCE)_?_?|_MSC_VER|_WIN32_WINNT|_POSIX[A-Z_]*|__has_include)([^A-Za-z0-9_]|$)"
  thrower = "(^|[^A-Za-z0-9_])(throw|sto(i|l|ul|ll|ull|f|d|ld))([^A-Za-z0-9_]|$)"
}

FNR == 1 { inComment = 0; rawEnd = ""; joined = ""; room = folderOf(FILENAME); ofSystem = room ~ systemRooms }

FILENAME ~ /rooms\.cmake$/ {
  if ($0 !~ /^room\(/) next
  row = $0; gsub(/room\(|\).*/, "", row)
  count = split(row, word, " ")
  neighbour[word[1] " " word[1]] = 1
  for (i = 2; i <= count; ++i) neighbour[word[1] " " word[i]] = 1
  next
}

{
  sub(/\r$/, "")
  if ($0 ~ /^[ \t]*#[ \t]*include/ && !inComment && rawEnd == "") { checkInclude($0); next }
  code = withoutTextAndComments($0)
  if (code ~ /\\$/) { joined = joined substr(code, 1, length(code) - 1) " "; next }
  code = joined code; joined = ""
  if (code ~ /^[ \t]*#[ \t]*(if|elif)/ && code ~ platformMacro && !ofSystem)
    breach("asks which system it is built for")
  if (match(code, thrower)) {
    what = substr(code, RSTART, RLENGTH); gsub(/[^a-z]/, "", what)
    breach("uses " what ": failure is a return value")
  }
}

END { exit breaches > 0 }

function breach(text) { print FILENAME ":" FNR ": " text; ++breaches }

function folderOf(name) { sub(/\/[^\/]*$/, "", name); return name }

function checkInclude(line,   name, folder, quoted) {
  quoted = line ~ /^[ \t]*#[ \t]*include[ \t]*"/
  if (!quoted && line !~ /^[ \t]*#[ \t]*include[ \t]*</) { breach("includes by a macro"); return }
  name = line; sub(/^[^"<]*["<]/, "", name); sub(/[">].*/, "", name)
  folder = folderOf(name)
  if (!quoted) {
    # The language's own headers have neither a point nor a folder in their names.
    if (name ~ /[.\/]/ && !ofSystem && !((room " " folder) in library))
      breach("includes <" name ">, which only a system's room may")
  } else if (name !~ /\// || name ~ /\.\.?\//) {
    breach("includes \"" name "\", not by its path from the root")
  } else if (!((room " " folder) in neighbour) && !(folder == "res" && room ~ resourceRooms)) {
    breach("includes \"" name "\", but " room " may not look into " folder)
  }
}

# The line without comments and the contents of strings and characters, whatever lines they span.
function withoutTextAndComments(line,   out, at, c, delimiter) {
  out = ""
  while (line != "") {
    if (inComment || rawEnd != "") {
      at = index(line, inComment ? "*/" : rawEnd)
      if (!at) return out
      line = substr(line, at + (inComment ? 2 : length(rawEnd)))
      inComment = 0; rawEnd = ""
      out = out " "
      continue
    }
    if (!match(line, /\/\/|\/\*|"|'/)) return out line
    out = out substr(line, 1, RSTART - 1)
    c = substr(line, RSTART, RLENGTH)
    line = substr(line, RSTART + RLENGTH)
    if (c == "//") return out
    if (c == "/*") { inComment = 1; continue }
    if (c == "\"" && out ~ /(^|[^A-Za-z0-9_])(u8|u|U|L)?R$/) {
      delimiter = line; sub(/\(.*/, "", delimiter)
      rawEnd = ")" delimiter "\""
      continue
    }
    if (c == "'" && out ~ /(^|[^A-Za-z0-9_])[0-9][0-9A-Za-z.]*$/) continue  # 10'000
    at = closing(line, c)
    if (!at) return out
    line = substr(line, at + 1)
    out = out c c
  }
  return out
}

# Where the string or character that began before `line` ends; a backslash guards the next one.
function closing(line, quote,   i, c) {
  for (i = 1; i <= length(line); ++i) {
    c = substr(line, i, 1)
    if (c == "\\") ++i
    else if (c == quote) return i
  }
  return 0
}
