#include "formats/convert.h"

#include "files/whole_file.h"
#include "formats/archive.h"
#include "platform/clock.h"

namespace vgps {
namespace {

// One pass for each kind, where the order matters.
enum class Pass { everything, waypoints, routes, tracks };

class PassSink : public ExchangeSink {
 public:
  PassSink(ExchangeSink& to, Pass pass) : to_(to), pass_(pass) {}

  bool waypoint(const ExchangePoint& point) override {
    return !takes(Pass::waypoints) || to_.waypoint(point);
  }
  bool beginPath(PathKind kind, std::string_view name) override {
    open_ = takes(kind == PathKind::route ? Pass::routes : Pass::tracks);
    return !open_ || to_.beginPath(kind, name);
  }
  bool beginSegment(bool own) override { return !open_ || to_.beginSegment(own); }
  bool point(const ExchangePoint& point) override { return !open_ || to_.point(point); }
  bool endPath(std::string_view name) override { return !open_ || to_.endPath(name); }

 private:
  bool takes(Pass kind) const { return pass_ == Pass::everything || pass_ == kind; }

  ExchangeSink& to_;
  const Pass pass_;
  bool open_ = false;
};

// False when a source ended it, or the writer.
bool runPass(Pass pass, std::span<const ConvertSource> sources, const ConvertOptions& options,
             ExchangeSink& writer, ConvertResult& result) {
  PassSink sorted(writer, pass);
  ConvertSink sink(sorted, options);
  result.notes.clear();
  for (size_t i = 0; i < sources.size(); ++i) {
    result.notes.push_back(sources[i].read(sink));
    if (!isUsable(result.notes.back().end)) {
      result.failed = i;
      return false;
    }
  }
  result.waypoints = sink.waypoints;
  result.paths = sink.paths;
  result.points = sink.points;
  return sink.end();
}

// Writes everything; `outOfOrder` says that it takes a pass for each kind instead.
bool runPasses(std::span<const Pass> passes, std::span<const ConvertSource> sources,
               const ConvertOptions& options, const TextSink& sink, const TextPatch& patch,
               ConvertResult& result, bool& outOfOrder) {
  result = {};
  const auto writer = makeWriter(options.to, {options.gpx10}, sink, patch);
  if (writer == nullptr) return false;
  for (const Pass pass : passes) {
    const bool done = runPass(pass, sources, options, *writer, result);
    outOfOrder = writer->outOfOrder();
    if (!done) return false;
  }
  result.losses = writer->losses();
  return writer->finish();
}

constexpr Pass kOnePass[] = {Pass::everything};
constexpr Pass kPassForEach[] = {Pass::waypoints, Pass::routes, Pass::tracks};

bool packDocument(const std::string& document, OutputFile& file) {
  InputFile bytes(document);
  ArchiveWriter archive(file);
  const bool packed = bytes && archive.add("doc.kml", bytes.source(), systemClock().local());
  return archive.finish() && packed && !bytes.failed();
}

}  // namespace

PathKind ConvertSink::kindFor(PathKind kind) const {
  if (options_.as == ConvertAs::track) return PathKind::track;
  return options_.as == ConvertAs::route ? PathKind::route : kind;
}

std::string ConvertSink::nameFor(std::string_view name) {
  if (options_.name.empty()) return std::string(name);
  return paths < 2 ? options_.name : options_.name + " (" + std::to_string(paths) + ")";
}

bool ConvertSink::waypoint(const ExchangePoint& point) {
  if (options_.as == ConvertAs::asItIs || options_.as == ConvertAs::waypoints) {
    ++waypoints;
    return to_.waypoint(point);
  }
  if (!gathering_) {
    ++paths;
    gathering_ = true;
    if (!to_.beginPath(kindFor(PathKind::track), nameFor({})) || !to_.beginSegment(true)) {
      return false;
    }
  }
  ++points;
  return to_.point(point);
}

bool ConvertSink::beginPath(PathKind kind, std::string_view name) {
  if (options_.as == ConvertAs::waypoints) return true;
  if (!end()) return false;
  ++paths;
  name_ = nameFor(name);
  return to_.beginPath(kindFor(kind), name_);
}

bool ConvertSink::beginSegment(bool own) {
  return options_.as == ConvertAs::waypoints || to_.beginSegment(own);
}

bool ConvertSink::point(const ExchangePoint& point) {
  if (options_.as == ConvertAs::waypoints) {
    ++waypoints;
    return to_.waypoint(point);
  }
  ++points;
  return to_.point(point);
}

bool ConvertSink::endPath(std::string_view name) {
  if (options_.as == ConvertAs::waypoints) return true;
  return to_.endPath(options_.name.empty() ? name : std::string_view(name_));
}

bool ConvertSink::end() {
  if (!gathering_) return true;
  gathering_ = false;
  return to_.endPath({});
}

ConvertResult convertToFile(const std::string& output, std::span<const ConvertSource> sources,
                            const ConvertOptions& options, const ExclusiveOpener& open) {
  ConvertResult result;
  if (options.to == ExchangeFormat::kmz) {
    ConvertOptions document = options;
    document.to = ExchangeFormat::kml;
    const std::string part = output + ".part";
    result = convertToFile(part, sources, document, open);
    OutputFile file(output, open);
    result.written = result.written && packDocument(part, file) && file.finish();
    removeFile(part);
    return result;
  }
  for (const std::span<const Pass> passes :
       {std::span<const Pass>(kOnePass), std::span<const Pass>(kPassForEach)}) {
    OutputFile file(output, open);
    bool outOfOrder = false;
    const bool done = runPasses(
        passes, sources, options, [&](std::string_view bytes) { return file.write(bytes); },
        [&](uint64_t offset, std::string_view bytes) { return file.writeOver(offset, bytes); },
        result, outOfOrder);
    if (outOfOrder) continue;
    result.written = done && file.finish();
    break;
  }
  return result;
}

ConvertResult convertToStream(const TextSink& sink, std::span<const ConvertSource> sources,
                              const ConvertOptions& options) {
  // What is corrected later has to be held until its end.
  std::string held;
  const bool holds = options.to == ExchangeFormat::geojson;
  const TextSink to = holds ? TextSink([&held](std::string_view bytes) {
    held += bytes;
    return true;
  })
                            : sink;
  const TextPatch patch = [&held](uint64_t offset, std::string_view bytes) {
    held.replace(offset, bytes.size(), bytes);
    return true;
  };
  ConvertResult result;
  bool outOfOrder = false;
  // A stream cannot begin again: the kinds are sorted from the start where they may have to be.
  const bool sorted = options.to == ExchangeFormat::gpx && !options.gpx10;
  const auto passes =
      sorted ? std::span<const Pass>(kPassForEach) : std::span<const Pass>(kOnePass);
  result.written = runPasses(passes, sources, options, to, patch, result, outOfOrder);
  if (holds) result.written = result.written && sink(held);
  return result;
}

}  // namespace vgps
