#include "files/input_file.h"

#include <algorithm>

#include "platform/files.h"

namespace vgps {
namespace {

constexpr size_t kBlock = size_t{1} << 20;
constexpr size_t kFirstRoom = size_t{1} << 16;

}  // namespace

InputFile::InputFile(const std::string& path) {
  if (fileKind(path) != FileKind::regular) return;
  file_.reset(openFile(path, "rb"));
  if (file_ != nullptr)
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // callers read in large blocks
}

ByteSource InputFile::source() {
  return [this](char* to, size_t size) { return std::fread(to, 1, size, file_.get()); };
}

bool InputFile::seek(uint64_t offset) {
  // `fseek` takes a long, which has 32 bits on some systems.
  constexpr uint64_t kStep = uint64_t{1} << 30;
  std::rewind(file_.get());
  for (; offset > 0; offset -= std::min(offset, kStep)) {
    if (std::fseek(file_.get(), static_cast<long>(std::min(offset, kStep)), SEEK_CUR) != 0) {
      return false;
    }
  }
  return true;
}

bool InputFile::readAt(uint64_t offset, uint64_t size, std::string& out) {
  if (!seek(offset)) return false;
  out.clear();
  while (out.size() < size) {
    const size_t before = out.size();
    const size_t wanted = std::min<uint64_t>(size - before, 16 * kBlock);
    out.resize(before + wanted);
    const size_t got = std::fread(out.data() + before, 1, wanted, file_.get());
    if (got < wanted) return false;
  }
  return true;
}

bool InputFile::copy(uint64_t begin, uint64_t end,
                     const std::function<bool(std::string_view)>& write) {
  if (!seek(begin)) return false;
  std::string block(std::min<uint64_t>(kBlock, end - begin), '\0');
  for (uint64_t left = end - begin; left > 0;) {
    const size_t wanted = std::min<uint64_t>(left, block.size());
    if (std::fread(block.data(), 1, wanted, file_.get()) != wanted) return false;
    if (!write(std::string_view(block).substr(0, wanted))) return false;
    left -= wanted;
  }
  return true;
}

bool InputFile::failed() const { return std::ferror(file_.get()) != 0; }

void readToEnd(const ByteSource& source, std::string& out) {
  size_t used = 0;
  for (size_t got = 1; got > 0; used += got) {
    out.resize(std::max(2 * used, kFirstRoom));
    got = source(out.data() + used, out.size() - used);
  }
  out.resize(used);
}

bool readWholeFile(const std::string& path, std::string& out, uint64_t most) {
  InputFile file(path);
  FileStamp stamp;
  if (!file || !fileStamp(path, stamp) || stamp.size > most) return false;
  readToEnd(file.source(), out);
  return !file.failed();
}

}  // namespace vgps
