#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vgps {

// One XML library holding one document. What it cannot do returns false.
class XmlLibrary {
 public:
  virtual ~XmlLibrary() = default;
  virtual bool load(const std::string& file) = 0;
  // `text` stays alive and may be written into, which some libraries live by.
  virtual bool parse(std::string& text) = 0;
  virtual bool save(const std::string&) { return false; }
  // The bytes written; 0 when it cannot.
  virtual size_t saveToMemory() { return 0; }
};

struct NamedXmlLibrary {
  std::string name;
  std::function<std::unique_ptr<XmlLibrary>()> make;
};

// Ours first, the first of pugixml next; of the others those that were found when this was built.
std::vector<NamedXmlLibrary> xmlLibraries();

}  // namespace vgps
