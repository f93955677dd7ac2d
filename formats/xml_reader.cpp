#include "formats/readers.h"

namespace vgps {
namespace {

using Read = void (*)(XmlPull&, ExchangeSink&, ReadingNotes&);

struct Root {
  std::string_view name;
  ExchangeFormat format;
  Read read;
};

constexpr Root kRoots[] = {
    {"gpx", ExchangeFormat::gpx, readGpx},
    {"loc", ExchangeFormat::loc, readLoc},
    {"kml", ExchangeFormat::kml, readKml},
    // Parts of a KML document that some programs write as documents of their own.
    {"Document", ExchangeFormat::kml, readKml},
    {"Folder", ExchangeFormat::kml, readKml},
    {"Placemark", ExchangeFormat::kml, readKml},
};

}  // namespace

void readXmlExchange(ByteSource source, ExchangeSink& sink, ReadingNotes& notes) {
  XmlPull xml(std::move(source));
  if (!xml.nextChild(0)) {
    notes.end = ReadingEnd::empty;
    return;
  }
  notes.root = xml.name();
  notes.unknownEncoding = xml.unknownEncoding();
  if (notes.root == "t") {
    notes.format = ExchangeFormat::trackFile;
    return;
  }
  notes.end = ReadingEnd::foreign;
  for (const Root& root : kRoots) {
    if (root.name != notes.root) continue;
    notes.format = root.format;
    notes.end = ReadingEnd::whole;
    root.read(xml, sink, notes);
    break;
  }
  notes.damage = xml.damage();
  notes.damageOffset = xml.damagePlace();
  if (notes.end == ReadingEnd::whole && notes.damage != XmlDamage::none) {
    notes.end = ReadingEnd::damaged;
  }
}

}  // namespace vgps
