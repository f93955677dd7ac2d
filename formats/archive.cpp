#include "formats/archive.h"

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <algorithm>
#include <vector>

#include "platform/files.h"

namespace vgps {
namespace {

constexpr uLong kNamesAreUtf8 = 1U << 11;
constexpr int kWindowBits = -MAX_WBITS;  // raw deflate, as in archives
constexpr size_t kArchiveBlock = size_t{1} << 16;

// The archive library writes sequentially, except that it goes back to complete the headers of
// entries.
template <class Output>
uLong writeOutput(voidpf, voidpf stream, const void* bytes, uLong size) {
  auto& out = *static_cast<Output*>(stream);
  const std::string_view text(static_cast<const char*>(bytes), size);
  const auto over = static_cast<size_t>(std::min<uint64_t>(size, out.file.written() - out.at));
  out.good = out.good && (over == 0 || out.file.writeOver(out.at, text.substr(0, over)));
  out.good = out.good && (over == size || out.file.write(text.substr(over)));
  out.at += size;
  // A failure is reported by `good` alone: the library leaks a header if it cannot write one.
  return size;
}

template <class Output>
long seekOutput(voidpf, voidpf stream, ZPOS64_T offset, int origin) {
  auto& out = *static_cast<Output*>(stream);
  uint64_t from = 0;
  if (origin == ZLIB_FILEFUNC_SEEK_CUR) from = out.at;
  if (origin == ZLIB_FILEFUNC_SEEK_END) from = out.file.written();
  if (offset > out.file.written() - from) return -1;
  out.at = from + offset;
  return 0;
}

template <class Output>
zlib_filefunc64_def outputFunctions(Output& out) {
  zlib_filefunc64_def functions{};
  functions.opaque = &out;
  functions.zopen64_file = [](voidpf opaque, const void*, int) { return opaque; };
  functions.zread_file = [](voidpf, voidpf, void*, uLong) { return uLong{0}; };
  functions.zwrite_file = writeOutput<Output>;
  functions.ztell64_file = [](voidpf, voidpf stream) {
    return ZPOS64_T{static_cast<Output*>(stream)->at};
  };
  functions.zseek64_file = seekOutput<Output>;
  functions.zclose_file = [](voidpf, voidpf) { return 0; };
  functions.zerror_file = [](voidpf, voidpf stream) {
    return static_cast<Output*>(stream)->good ? 0 : 1;
  };
  return functions;
}

zlib_filefunc64_def inputFunctions() {
  zlib_filefunc64_def functions{};
  fill_fopen64_filefunc(&functions);
  functions.zopen64_file = [](voidpf, const void* path, int) {
    return static_cast<voidpf>(openFile(static_cast<const char*>(path), "rb"));
  };
  return functions;
}

bool endsWith(std::string_view name, std::string_view ending) {
  if (name.size() < ending.size()) return false;
  const std::string_view tail = name.substr(name.size() - ending.size());
  return std::equal(tail.begin(), tail.end(), ending.begin(), [](char a, char b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; };
    return lower(a) == lower(b);
  });
}

}  // namespace

struct ArchiveWriter::Zip {
  OutputFile& file;
  uint64_t at = 0;
  bool good = true;
  zipFile handle = nullptr;
};

ArchiveWriter::ArchiveWriter(OutputFile& out) : zip_(new Zip{out}) {
  zlib_filefunc64_def functions = outputFunctions<Zip>(*zip_);
  zip_->handle = zipOpen2_64("", APPEND_STATUS_CREATE, nullptr, &functions);
}

ArchiveWriter::~ArchiveWriter() { finish(); }

bool ArchiveWriter::add(const std::string& name, const ByteSource& bytes, const DateTime& local) {
  if (zip_->handle == nullptr) return false;
  zip_fileinfo info{};
  info.tmz_date.tm_sec = local.second;
  info.tmz_date.tm_min = local.minute;
  info.tmz_date.tm_hour = local.hour;
  info.tmz_date.tm_mday = local.day;
  info.tmz_date.tm_mon = std::max(0, local.month - 1);
  info.tmz_date.tm_year = local.year;
  const int opened =
      zipOpenNewFileInZip4_64(zip_->handle, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr,
                              Z_DEFLATED, Z_DEFAULT_COMPRESSION, 0, kWindowBits, DEF_MEM_LEVEL,
                              Z_DEFAULT_STRATEGY, nullptr, 0, 0, kNamesAreUtf8, 0);
  if (opened != ZIP_OK) return false;
  std::vector<char> block(kArchiveBlock);
  bool good = true;
  for (size_t got = bytes(block.data(), block.size()); good && got > 0;
       got = bytes(block.data(), block.size())) {
    good = zipWriteInFileInZip(zip_->handle, block.data(), static_cast<unsigned>(got)) == ZIP_OK &&
           zip_->good;
  }
  return zipCloseFileInZip(zip_->handle) == ZIP_OK && good && zip_->good;
}

bool ArchiveWriter::finish() {
  if (zip_->handle == nullptr) return false;
  const bool closed = zipClose(zip_->handle, nullptr) == ZIP_OK;
  zip_->handle = nullptr;
  return closed && zip_->good;
}

struct ArchiveReader::Unzip {
  unzFile handle = nullptr;
  bool entryOpen = false;
};

ArchiveReader::ArchiveReader(const std::string& path) : unzip_(std::make_unique<Unzip>()) {
  if (fileKind(path) != FileKind::regular) return;
  zlib_filefunc64_def functions = inputFunctions();
  unzip_->handle = unzOpen2_64(path.c_str(), &functions);
  if (unzip_->handle != nullptr) state_ = State::noEntry;
}

ArchiveReader::~ArchiveReader() {
  if (unzip_->entryOpen) unzCloseCurrentFile(unzip_->handle);
  if (unzip_->handle != nullptr) unzClose(unzip_->handle);
}

ArchiveReader::State ArchiveReader::openFirst(std::string_view ending) {
  if (state_ != State::noEntry) return state_;
  int found = unzGoToFirstFile(unzip_->handle);
  for (; found == UNZ_OK; found = unzGoToNextFile(unzip_->handle)) {
    std::vector<char> name(UINT16_MAX + 1);
    unz_file_info64 info{};
    if (unzGetCurrentFileInfo64(unzip_->handle, &info, name.data(), UINT16_MAX, nullptr, 0, nullptr,
                                0) != UNZ_OK) {
      return state_ = State::unreadable;
    }
    name_.assign(name.data(), std::min<size_t>(info.size_filename, UINT16_MAX));
    if (!endsWith(name_, ending)) continue;
    if (info.uncompressed_size > kMostUnpacked) return state_ = State::tooLarge;
    constexpr uLong kEncrypted = 1;
    const bool opened =
        (info.flag & kEncrypted) == 0 && unzOpenCurrentFile(unzip_->handle) == UNZ_OK;
    unzip_->entryOpen = opened;
    return state_ = opened ? State::ready : State::unreadable;
  }
  if (found != UNZ_END_OF_LIST_OF_FILE) state_ = State::unreadable;
  return state_;
}

ByteSource ArchiveReader::source() {
  return [this](char* to, size_t size) { return read(to, size); };
}

// The size in the directory may be wrong.
size_t ArchiveReader::read(char* to, size_t size) {
  if (state_ != State::ready) return 0;
  const auto most = static_cast<unsigned>(std::min(size, kArchiveBlock));
  const int got = unzReadCurrentFile(unzip_->handle, to, most);
  if (got < 0) state_ = State::unreadable;
  if (got <= 0) return 0;
  unpacked_ += static_cast<uint64_t>(got);
  if (unpacked_ > kMostUnpacked) {
    state_ = State::tooLarge;
    return 0;
  }
  return static_cast<size_t>(got);
}

}  // namespace vgps
