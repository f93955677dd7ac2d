#include "bench/xml_library.h"

#include "xml/document.h"
#if VEXA_HAVE_PUGIXML
#include <pugixml.hpp>
#endif
#if VEXA_HAVE_RAPIDXML
#include <fstream>
#include <iterator>
#include <rapidxml/rapidxml.hpp>
#endif
#if VEXA_HAVE_TINYXML2
#include <tinyxml2.h>
#endif
#if VEXA_HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/xmlsave.h>
#endif

namespace vgps {
namespace {

class Ours : public XmlLibrary {
 public:
  bool load(const std::string& file) override { return bool(document_.Load(file)); }
  bool parse(std::string& text) override { return bool(document_.Load(text, XmlLoadMode::text)); }
  bool save(const std::string& file) override { return document_.Save(file) != 0; }
  size_t saveToMemory() override { return document_.saveToMemory().size(); }

 private:
  XmlDocument document_;
};

#if VEXA_HAVE_PUGIXML
class Pugixml : public XmlLibrary {
 public:
  explicit Pugixml(unsigned options) : options_(options) {}
  bool load(const std::string& file) override {
    return bool(document_.load_file(file.c_str(), options_));
  }
  bool parse(std::string& text) override {
    return bool(document_.load_buffer_inplace(text.data(), text.size(), options_));
  }
  bool save(const std::string& file) override { return document_.save_file(file.c_str()); }
  size_t saveToMemory() override {
    struct : pugi::xml_writer {
      std::string text;
      void write(const void* data, size_t size) override {
        text.append(static_cast<const char*>(data), size);
      }
    } writer;
    document_.save(writer);
    return writer.text.size();
  }

 private:
  pugi::xml_document document_;
  unsigned options_;
};
#endif

#if VEXA_HAVE_RAPIDXML
class Rapidxml : public XmlLibrary {
 public:
  bool load(const std::string& file) override {
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    text_.resize(static_cast<size_t>(stream.tellg()));
    stream.seekg(0).read(text_.data(), static_cast<std::streamsize>(text_.size()));
    return parse(text_);
  }
  bool parse(std::string& text) override {
    document_.parse<0>(text.data());
    return document_.first_node() != nullptr;
  }

 private:
  std::string text_;
  rapidxml::xml_document<> document_;
};
#endif

#if VEXA_HAVE_TINYXML2
class Tinyxml2 : public XmlLibrary {
 public:
  bool load(const std::string& file) override {
    return document_.LoadFile(file.c_str()) == tinyxml2::XML_SUCCESS;
  }
  bool parse(std::string& text) override {
    return document_.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS;
  }
  bool save(const std::string& file) override {
    return document_.SaveFile(file.c_str()) == tinyxml2::XML_SUCCESS;
  }
  size_t saveToMemory() override {
    tinyxml2::XMLPrinter printer;
    document_.Print(&printer);
    return static_cast<size_t>(printer.CStrSize());
  }

 private:
  tinyxml2::XMLDocument document_;
};
#endif

#if VEXA_HAVE_LIBXML2
class Libxml2 : public XmlLibrary {
 public:
  ~Libxml2() override { xmlFreeDoc(document_); }
  bool load(const std::string& file) override {
    document_ = xmlReadFile(file.c_str(), nullptr, XML_PARSE_HUGE);
    return document_ != nullptr;
  }
  bool parse(std::string& text) override {
    const int size = static_cast<int>(text.size());
    document_ = xmlReadMemory(text.data(), size, nullptr, nullptr, XML_PARSE_HUGE);
    return document_ != nullptr;
  }
  bool save(const std::string& file) override {
    return xmlSaveFormatFile(file.c_str(), document_, 1) > 0;
  }
  size_t saveToMemory() override {
    xmlChar* text = nullptr;
    int size = 0;
    xmlDocDumpFormatMemory(document_, &text, &size, 1);
    xmlFree(text);
    return static_cast<size_t>(size);
  }

 private:
  xmlDocPtr document_ = nullptr;
};
#endif

}  // namespace

std::vector<NamedXmlLibrary> xmlLibraries() {
  std::vector<NamedXmlLibrary> all;
  all.push_back({"ours", [] { return std::make_unique<Ours>(); }});
#if VEXA_HAVE_PUGIXML
  all.push_back({"pugixml", [] { return std::make_unique<Pugixml>(pugi::parse_default); }});
  all.push_back({"pugixml, trimming", [] {
                   constexpr unsigned kTrim = pugi::parse_default | pugi::parse_trim_pcdata;
                   return std::make_unique<Pugixml>(kTrim);
                 }});
#endif
#if VEXA_HAVE_RAPIDXML
  all.push_back({"rapidxml", [] { return std::make_unique<Rapidxml>(); }});
#endif
#if VEXA_HAVE_TINYXML2
  all.push_back({"tinyxml2", [] { return std::make_unique<Tinyxml2>(); }});
#endif
#if VEXA_HAVE_LIBXML2
  all.push_back({"libxml2", [] { return std::make_unique<Libxml2>(); }});
#endif
  return all;
}

}  // namespace vgps
