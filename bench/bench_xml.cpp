#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/number.h"
#include "bench/xml_library.h"
#include "bench/xml_settings.h"

// Loading and saving large documents, beside other libraries and beside moving the bytes alone.
// Each figure is taken in a fresh process, as a program meets its files, and the libraries take
// turns, so that a busy moment of the machine meets all of them:
//
//   bench_xml [ROUNDS]             everything, as a table
//   bench_xml TASK LIBRARY FILE    one process's work: prints milliseconds and kilobytes
//
// What was written to disk before is flushed in front of every run, and saving goes over a file of
// the same size as it does in the program: else a run would pay for the writing of the last one.
namespace vgps {
namespace {

constexpr size_t kFileSize = 50'000'000;
constexpr size_t kReference = 1;  // the library that ratios are told against

double milliseconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since)
      .count();
}

// What printf makes of it.
template <class... Arguments>
std::string formatText(const char* format, const Arguments&... arguments) {
  char text[400];
  return {text, static_cast<size_t>(std::snprintf(text, sizeof text, format, arguments...))};
}

// Points as an exchange file has them: five texts each, every text on a line of its own.
std::string textFile() {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> step(-1e-4, 1e-4);
  std::uniform_real_distribution<double> value(0, 400);
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n"
      "<gpx version=\"1.0\" creator=\"Vexa GPS\">\r\n\t<trk>\r\n\t\t<trkseg>\r\n";
  double latitude = 48.1173;
  double longitude = 11.516667;
  for (unsigned i = 1; out.size() < kFileSize; ++i) {
    latitude += step(random);
    longitude += step(random);
    out += formatText("\t\t\t<trkpt lat=\"%f\" lon=\"%f\">\r\n", latitude, longitude);
    const std::pair<const char*, std::string> texts[] = {
        {"ele", formatText("%f", value(random))},
        {"name", formatText("Point %u", i)},
        {"time", formatText("2009-03-23T%02u:%02u:%02uZ", i / 3600 % 24, i / 60 % 60, i % 60)},
        {"course", formatText("%f", value(random))},
        {"speed", formatText("%f", value(random))}};
    for (const auto& [name, text] : texts) {
      out += formatText("\t\t\t\t<%s>\r\n%s\r\n\t\t\t\t</%s>\r\n", name, text.c_str(), name);
    }
    out += "\t\t\t</trkpt>\r\n";
  }
  return out + "\t\t</trkseg>\r\n\t</trk>\r\n</gpx>\r\n";
}

// Points as a track file has them: one element each, everything in attributes.
std::string attributeFile() {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> step(-1e-4, 1e-4);
  std::uniform_real_distribution<double> value(0, 360);
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n<t n=\"Track 1\">\r\n";
  double latitude = 48.1173;
  double longitude = 11.516667;
  for (unsigned i = 1; out.size() < kFileSize; ++i) {
    latitude += step(random);
    longitude += step(random);
    out += formatText(
        "\t<p x=\"%f\" y=\"%f\" z=\"%f\" s=\"%u\" c=\"%u\" spd=\"%.2f\" "
        "time=\"23-03-2009 %02u:%02u:%02u\" br=\"%.1f\" m=\"0\"/>\r\n",
        longitude, latitude, value(random), i % 12, i % 60, value(random) / 10, i / 3600 % 24,
        i / 60 % 60, i % 60, value(random));
  }
  return out + "</t>\r\n";
}

long peakKilobytes() {
  std::ifstream status("/proc/self/status");
  std::string word;
  long kilobytes = 0;
  while (status >> word) {
    if (word == "VmHWM:") status >> kilobytes;
  }
  return kilobytes;
}

std::string contentsOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The limit: the bytes of the file moved and nothing done with them.
class BytesOnly : public XmlLibrary {
 public:
  bool load(const std::string& file) override {
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    size_ = static_cast<size_t>(stream.tellg());
    bytes_.reset(static_cast<char*>(std::malloc(size_)));
    return bool(stream.seekg(0).read(bytes_.get(), static_cast<std::streamsize>(size_)));
  }
  bool parse(std::string&) override { return false; }
  bool save(const std::string& file) override {
    std::ofstream stream(file, std::ios::binary);
    return bool(stream.write(bytes_.get(), static_cast<std::streamsize>(size_)));
  }
  size_t saveToMemory() override {
    const std::unique_ptr<char, Free> copy(static_cast<char*>(std::malloc(size_)));
    std::memcpy(copy.get(), bytes_.get(), size_);
    return size_ + (copy.get()[size_ / 2] == 0 ? 1 : 0);
  }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<char, Free> bytes_;
  size_t size_ = 0;
};

std::vector<NamedXmlLibrary> contestants() {
  std::vector<NamedXmlLibrary> all = xmlLibraries();
  all.push_back({"the bytes alone", [] { return std::make_unique<BytesOnly>(); }});
  return all;
}

// One task in this process; the milliseconds it took, nothing when it failed.
std::optional<double> timeTask(const std::string& task, XmlLibrary& library,
                               const std::string& file) {
  using Clock = std::chrono::steady_clock;
  if (task == "load") {
    const auto start = Clock::now();
    if (!library.load(file)) return std::nullopt;
    return milliseconds(start);
  }
  if (task == "parse") {
    std::string text = contentsOf(file);
    const auto start = Clock::now();
    if (!library.parse(text)) return std::nullopt;
    const double took = milliseconds(start);
    // The tree may point into the text: it goes first.
    std::printf("%f %ld\n", took, peakKilobytes());
    std::fflush(stdout);
    std::_Exit(0);
  }
  if (!library.load(file)) return std::nullopt;
  const std::string out = file + ".out";
  if (task == "save")
    std::filesystem::copy_file(file, out, std::filesystem::copy_options::overwrite_existing);
  if (task == "new") std::filesystem::remove(out);
  ::sync();
  const auto start = Clock::now();
  const bool done = task == "render" ? library.saveToMemory() > 0 : library.save(out);
  if (!done) return std::nullopt;
  return milliseconds(start);
}

int runOne(const std::string& task, const std::string& name, const std::string& file) {
  if (task == "settings") {
    const auto took = timeSettings(name, file);
    if (took) std::printf("%f %ld\n", *took, peakKilobytes());
    return took ? 0 : 1;
  }
  for (const NamedXmlLibrary& named : contestants()) {
    if (named.name != name) continue;
    const std::unique_ptr<XmlLibrary> library = named.make();
    const auto took = timeTask(task, *library, file);
    if (!took) return 1;
    std::printf("%f %ld\n", *took, peakKilobytes());
    std::fflush(stdout);
    std::_Exit(0);  // tearing the tree down is not measured
  }
  return 1;
}

struct Figure {
  std::vector<double> times;  // milliseconds
  double megabytes = 0;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

void measure(const std::string& program, const std::string& task, const std::string& name,
             const std::string& file, Figure& figure) {
  ::sync();
  const std::string command = "'" + program + "' " + task + " '" + name + "' '" + file + "'";
  FILE* const child = popen(command.c_str(), "r");
  if (child == nullptr) return;
  double took = 0;
  long kilobytes = 0;
  if (std::fscanf(child, "%lf %ld", &took, &kilobytes) == 2) {
    figure.times.push_back(took);
    figure.megabytes = std::max(figure.megabytes, static_cast<double>(kilobytes) / 1024);
  }
  pclose(child);
}

void printTask(const std::string& title, const std::vector<NamedXmlLibrary>& libraries,
               std::vector<Figure>& figures, bool memory) {
  std::printf("%s\n", title.c_str());
  const double reference = median(figures[kReference].times);
  for (size_t i = 0; i < libraries.size(); ++i) {
    if (figures[i].times.empty()) continue;
    const double took = median(figures[i].times);
    const double least = *std::min_element(figures[i].times.begin(), figures[i].times.end());
    std::printf("  %-20s %8.1f ms  (least %8.1f)  %5.2f x %s", libraries[i].name.c_str(), took,
                least, reference / took, libraries[kReference].name.c_str());
    if (memory) {
      std::printf("  %7.1f MB  %5.2f of it", figures[i].megabytes,
                  figures[i].megabytes / figures[kReference].megabytes);
    }
    std::printf("\n");
  }
}

void race(const std::string& program, const std::string& file, const std::string& title,
          int rounds) {
  const std::vector<NamedXmlLibrary> libraries = contestants();
  const std::pair<const char*, const char*> tasks[] = {{"load", "load, file to tree"},
                                                       {"save", "save, tree to file"},
                                                       {"new", "save, tree to a new file"},
                                                       {"render", "write in memory"},
                                                       {"parse", "parse in memory"}};
  for (const auto& [task, what] : tasks) {
    std::vector<Figure> figures(libraries.size());
    for (int round = 0; round < rounds; ++round) {
      for (size_t i = 0; i < libraries.size(); ++i) {
        measure(program, task, libraries[i].name, file, figures[i]);
      }
    }
    printTask(title + ": " + what, libraries, figures, std::strcmp(task, "load") == 0);
  }
}

template <class Work>
double nanosecondsEach(size_t count, Work work) {
  double least = 1e30;
  for (int round = 0; round < 7; ++round) {
    const auto start = std::chrono::steady_clock::now();
    work();
    least = std::min(least, milliseconds(start) * 1e6 / static_cast<double>(count));
  }
  return least;
}

// The program's own document, which it reads at every start.
void raceSettings(const std::string& program, const std::string& file) {
  constexpr int kRounds = 21;
  const char* const libraries[] = {"ours", "pugixml"};
  Figure figures[std::size(libraries)];
  if (!writeAllSettings(file)) return;
  for (int round = 0; round < kRounds; ++round) {
    for (size_t i = 0; i < std::size(libraries); ++i) {
      measure(program, "settings", libraries[i], file, figures[i]);
    }
  }
  std::printf("vgps.xml with every key: from its name to all settings, median of %d processes\n",
              kRounds);
  for (size_t i = 0; i < std::size(libraries); ++i) {
    if (figures[i].times.empty()) continue;
    std::printf("  %-20s %8.3f ms  (least %8.3f)\n", libraries[i], median(figures[i].times),
                *std::min_element(figures[i].times.begin(), figures[i].times.end()));
  }
}

volatile double sink = 0;

void raceNumbers() {
  constexpr size_t kCount = 1'000'000;
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> degrees(-180, 180);
  std::vector<double> values(kCount);
  for (double& value : values) value = degrees(random);
  std::vector<std::string> texts(kCount);
  size_t wrong = 0;
  for (size_t i = 0; i < kCount; ++i) {
    char expected[64];
    std::snprintf(expected, sizeof expected, "%f", values[i]);
    texts[i] = fixedText(values[i], 6);
    if (texts[i] != expected) ++wrong;
    const double read = leadingDouble(texts[i]);
    const double same = std::strtod(expected, nullptr);
    if (std::memcmp(&read, &same, sizeof read) != 0) ++wrong;
  }
  char out[kLongestFixedText];
  const double write = nanosecondsEach(kCount, [&] {
    for (const double value : values) sink = *(writeFixed(out, value, 6) - 1);
  });
  const double print = nanosecondsEach(kCount, [&] {
    for (const double value : values) sink = std::snprintf(out, sizeof out, "%f", value);
  });
  const double read = nanosecondsEach(kCount, [&] {
    for (const std::string& text : texts) sink = leadingDouble(text);
  });
  const double scan = nanosecondsEach(kCount, [&] {
    for (const std::string& text : texts) sink = std::strtod(text.c_str(), nullptr);
  });
  std::printf("numbers, %zu degrees: %zu differ from printf and strtod\n", kCount, wrong);
  std::printf("  six decimals out     %6.1f ns, printf \"%%f\" %6.1f ns: %4.1f x\n", write, print,
              print / write);
  std::printf("  decimals in          %6.1f ns, strtod      %6.1f ns: %4.1f x\n", read, scan,
              scan / read);
}

int raceAll(const std::string& program, int rounds) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vexa-bench-xml";
  std::filesystem::create_directories(folder);
  const std::string text = (folder / "text.xml").string();
  const std::string attributes = (folder / "attributes.xml").string();
  std::ofstream(text, std::ios::binary) << textFile();
  std::ofstream(attributes, std::ios::binary) << attributeFile();
  if (xmlLibraries().size() <= kReference) std::printf("pugixml was not there: no comparison\n");
  std::printf(
      "files of %zu MB, median of %d rounds, each in a fresh process with nothing left to be "
      "written by those before; saving goes over a file that is there\n",
      kFileSize / 1'000'000, rounds);
  if (xmlLibraries().size() > kReference) {
    race(program, text, "text file", rounds);
    race(program, attributes, "attribute file", rounds);
  }
  raceSettings(program, (folder / "vgps.xml").string());
  raceNumbers();
  std::filesystem::remove_all(folder);
  return 0;
}

}  // namespace
}  // namespace vgps

int main(int argc, char** argv) {
  if (argc == 4) return vgps::runOne(argv[1], argv[2], argv[3]);
  return vgps::raceAll(argv[0], argc > 1 ? std::atoi(argv[1]) : 7);
}
