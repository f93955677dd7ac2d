#include "formats/exports.h"

#include <functional>

#include "base/texts.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "formats/archive.h"
#include "formats/gpx.h"
#include "formats/kml.h"
#include "formats/resources.h"
#include "platform/files.h"
#include "track/track_file.h"

namespace vgps {
namespace {

constexpr const char* kIconPart = "vgpskmlicon.tmp";
constexpr const char* kDocumentPart = "vgpskml.tmp";
constexpr const char* kTracksFolder = "VGPS Tracks";

// `write(xml)` returns the result.
template <class Write>
ExportResult writeXmlFile(const std::string& fileName, const ExportPlace& place, Write write) {
  OutputFile file(fileName, place.open);
  XmlText xml([&](std::string_view bytes) { return file.write(bytes); });
  xml.declaration();
  const ExportResult result = write(xml);
  if (result != ExportResult::done) return result;
  return xml.finish() && file.finish() ? ExportResult::done : ExportResult::notWritten;
}

template <class Write>
ExportResult writeGpxFile(const std::string& fileName, const ExportPlace& place, Write write) {
  return writeXmlFile(fileName, place, [&](XmlText& xml) {
    writeGpxRoot(xml);
    const ExportResult result = write(xml);
    xml.close();
    return result;
  });
}

ExportResult opened(ExportResult result, const std::string& fileName, ExchangeHooks& hooks) {
  if (result == ExportResult::done) hooks.openDocument(fileName);
  return result;
}

bool isRefused(const TrackLibrary& tracks, ExchangeHooks& hooks) {
  if (!tracks.isFolder()) return false;
  hooks.tell(std::string(textOf(Text::notInFolderMode)));
  return true;
}

// Loads each track of the library.
ExportResult forEachTrack(TrackLibrary& tracks, ExchangeHooks& hooks,
                          const std::function<ExportResult(Track&)>& take) {
  const size_t count = tracks.tracks().size();
  for (size_t i = 0; i < count; ++i) {
    if (!hooks.progress(i, count)) return ExportResult::cancelled;
    Track track;
    if (tracks.load(i, 0, track) != LibraryResult::done) return ExportResult::notRead;
    const ExportResult result = take(track);
    if (result != ExportResult::done) return result;
  }
  return ExportResult::done;
}

bool asTrackAsked(ExchangeHooks& hooks) {
  return hooks.ask(std::string(textOf(Text::askRouteOrTrack)), false) != Answer::yes;
}

bool packAttachments(const Track& track, ArchiveWriter& archive, const DateTime& local) {
  for (size_t i = 0; i < track.attachments.size(); ++i) {
    const std::string& path = track.attachments[i].path;
    InputFile file(path);
    if (!file) continue;  // missing files cannot be included
    const std::string name = "ref" + std::to_string(i + 1) + "." + attachmentExtension(path);
    if (!archive.add(name, file.source(), local) || file.failed()) return false;
  }
  return true;
}

bool packFile(ArchiveWriter& archive, const std::string& path, const std::string& name,
              const DateTime& local) {
  InputFile file(path);
  return file && archive.add(name, file.source(), local) && !file.failed();
}

}  // namespace

ExportResult ExportWaypointGpx(const Waypoint& waypoint, const std::string& fileName,
                               const ExportPlace& place) {
  return writeGpxFile(fileName, place, [&](XmlText& xml) {
    writeGpxPoint(xml, gpxPointOf(waypoint), GpxPointKind::waypoint);
    return ExportResult::done;
  });
}

namespace {

ExportResult writeTrackGpx(const Track& track, const std::string& fileName, bool asTrack,
                           const ExportPlace& place) {
  return writeGpxFile(fileName, place, [&](XmlText& xml) {
    writeGpxTrack(xml, track, 1, asTrack, utcOffsetMinutes(place.clock));
    return ExportResult::done;
  });
}

}  // namespace

ExportResult ExportTrackGpx(const Track& track, const std::string& fileName, ExchangeHooks& hooks,
                            const ExportPlace& place) {
  return writeTrackGpx(track, fileName, asTrackAsked(hooks), place);
}

ExportResult BackupTrackGpx(const Track& track, const std::string& fileName,
                            const ExportPlace& place) {
  return writeTrackGpx(track, fileName, true, place);
}

ExportResult ExportAllGpx(const std::string& fileName, const WaypointLibrary& waypoints,
                          TrackLibrary& tracks, ExchangeHooks& hooks, const ExportPlace& place) {
  if (isRefused(tracks, hooks)) return ExportResult::refused;
  // One question and one number for all of them.
  const bool asTrack = asTrackAsked(hooks);
  const int32_t offset = utcOffsetMinutes(place.clock);
  return writeGpxFile(fileName, place, [&](XmlText& xml) {
    for (const StoredWaypoint& stored : waypoints.waypoints()) {
      writeGpxPoint(xml, gpxPointOf(stored.waypoint), GpxPointKind::waypoint);
    }
    return forEachTrack(tracks, hooks, [&](const Track& track) {
      writeGpxTrack(xml, track, 0, asTrack, offset);
      return xml.good() ? ExportResult::done : ExportResult::notWritten;
    });
  });
}

ExportResult ExportTrackKml(const Track& track, const std::string& fileName, bool withReferences,
                            ExchangeHooks& hooks, const ExportPlace& place) {
  const bool written = writeWholeFile(fileName, trackKml(track, withReferences), place.open);
  return opened(written ? ExportResult::done : ExportResult::notWritten, fileName, hooks);
}

ExportResult ExportTrackKmz(const Track& track, const std::string& archiveName,
                            ExchangeHooks& hooks, const ExportPlace& place) {
  const std::string icon = pathIn(place.temporaryFolder, kIconPart);
  const std::string document = pathIn(place.temporaryFolder, kDocumentPart);
  removeFile(icon);
  if (!writeWholeFile(icon, kIconKml, place.open) ||
      !writeWholeFile(document, trackKml(track, true), place.open)) {
    return ExportResult::notWritten;
  }
  const DateTime local = place.clock.local();
  OutputFile file(archiveName, place.open);
  ArchiveWriter archive(file);
  const bool packed = packFile(archive, document, "doc.kml", local) &&
                      packFile(archive, icon, "icon1.png", local) &&
                      packAttachments(track, archive, local);
  // If the archive fails, its parts stay until the next export overwrites them.
  if (!archive.finish() || !packed || !file.finish()) return ExportResult::notWritten;
  removeFile(icon);
  removeFile(document);
  return opened(ExportResult::done, archiveName, hooks);
}

ExportResult ExportAllKml(const std::string& fileName, const WaypointLibrary& waypoints,
                          TrackLibrary& tracks, ExchangeHooks& hooks, const ExportPlace& place) {
  if (isRefused(tracks, hooks)) return ExportResult::refused;
  constexpr int kDecimals = 7;
  constexpr int kAltitudeDecimals = 3;
  const ExportResult result = writeXmlFile(fileName, place, [&](XmlText& xml) {
    xml.open("kml");
    xml.open("Document");
    for (const StoredWaypoint& stored : waypoints.waypoints()) {
      writePlaceKml(xml, stored.waypoint, "VGPS Waypoint", kDecimals, kAltitudeDecimals);
    }
    const ExportResult written = forEachTrack(tracks, hooks, [&](const Track& track) {
      LineKml line(xml, track.name, "VGPS Track");
      for (const TrackPoint& point : track.points) {
        if (!isPosition(point.longitude, point.latitude)) continue;
        line.point(point.longitude, point.latitude, point.altitude);
      }
      line.end();
      return xml.good() ? ExportResult::done : ExportResult::notWritten;
    });
    xml.close(), xml.close();
    return written;
  });
  return opened(result, fileName, hooks);
}

ExportResult ExportWaypointKml(const Waypoint& waypoint, const std::string& fileName,
                               ExchangeHooks& hooks, const ExportPlace& place) {
  const ExportResult result = writeXmlFile(fileName, place, [&](XmlText& xml) {
    xml.beginTag("kml"), xml.attribute("xmlns", kKmlNamespace), xml.endTag();
    writePlaceKml(xml, waypoint, "Waypoint exported by VGPS", 6, 6);
    xml.close();
    return ExportResult::done;
  });
  return opened(result, fileName, hooks);
}

ExportResult ExportWaypointLoc(const Waypoint& waypoint, const std::string& fileName,
                               ExchangeHooks& hooks, const ExportPlace& place) {
  const ExportResult result = writeXmlFile(fileName, place, [&](XmlText& xml) {
    openLoc(xml);
    writeLocWaypoint(xml, waypoint, waypoint.name);
    xml.close();
    return ExportResult::done;
  });
  return opened(result, fileName, hooks);
}

ExportResult ExportAllLoc(const std::string& fileName, const WaypointLibrary& waypoints,
                          ExchangeHooks& hooks, const ExportPlace& place) {
  const ExportResult result = writeXmlFile(fileName, place, [&](XmlText& xml) {
    const auto all = waypoints.waypoints();
    openLoc(xml);
    for (size_t i = 0; i < all.size(); ++i) {
      writeLocWaypoint(xml, all[i].waypoint, "WP " + std::to_string(i + 1));
    }
    xml.close();
    return ExportResult::done;
  });
  return opened(result, fileName, hooks);
}

ExportResult ExportAllTracksAsFiles(const std::string& documentsFolder, TrackLibrary& tracks,
                                    ExchangeHooks& hooks, uint32_t& written,
                                    const ExportPlace& place) {
  written = 0;
  if (isRefused(tracks, hooks)) return ExportResult::refused;
  const std::string folder = pathIn(documentsFolder, kTracksFolder);
  if (hooks.ask(textWith(Text::askToExportTracks, folder), false) != Answer::yes) {
    return ExportResult::cancelled;
  }
  if (!makeFolder(folder)) return ExportResult::notWritten;
  return forEachTrack(tracks, hooks, [&](Track& track) {
    const TrackSaving saved =
        saveTrackFile(track, folder, attributesIn(track), place.clock.local(), place.open);
    if (saved != TrackSaving::saved) return ExportResult::notWritten;
    ++written;
    return ExportResult::done;
  });
}

}  // namespace vgps
