#include "gps/satellite_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace vgps {
namespace {

// "GPS 5 42*" for a used satellite with 42 dB-Hz, sorted.
std::vector<std::string> shown(const SatelliteView& view) {
  std::vector<std::string> texts;
  for (const ViewedSatellite& s : view.satellites()) {
    texts.push_back(std::string(satelliteSystemName(s.system)) + " " + std::to_string(s.id) + " " +
                    std::to_string(static_cast<int>(s.snr)) + (s.used ? "*" : ""));
  }
  std::sort(texts.begin(), texts.end());
  return texts;
}

using Texts = std::vector<std::string>;

Texts after(const std::vector<std::string>& lines) {
  SatelliteView view;
  for (const std::string& line : lines) view.take(DecodedSentence(line), 1000);
  return shown(view);
}

TEST(SatelliteView, SystemsAreToldByTalkerAndNumber) {
  const std::pair<const char*, const char*> rows[] = {
      {"$GPGSV,1,1,01,05,40,083,46*75", "GPS 5 46"},
      {"$GPGSV,1,1,01,33,40,083,46*75", "SBAS 33 46"},
      {"$GPGSV,1,1,01,193,40,083,46*75", "QZSS 193 46"},
      {"$GLGSV,1,1,01,65,40,083,46*75", "GLONASS 65 46"},
      {"$GNGSV,1,1,01,70,40,083,46*75", "GLONASS 70 46"},
      {"$GAGSV,1,1,01,05,40,083,46*75", "Galileo 5 46"},
      {"$GBGSV,1,1,01,05,40,083,46*75", "BeiDou 5 46"},
      {"$BDGSV,1,1,01,05,40,083,46*75", "BeiDou 5 46"},
      {"$PQGSV,1,1,01,05,40,083,46*75", "BeiDou 5 46"},
      {"$GQGSV,1,1,01,02,40,083,46*75", "QZSS 2 46"},
      {"$GIGSV,1,1,01,02,40,083,46*75", "NavIC 2 46"},
      {"$GNGSV,1,1,01,999,40,083,46*75", "unknown 999 46"},
      {"$GPGSV,1,1,01,05,40,083,*75", "GPS 5 0"},
      {"$GPGSV,1,1,01,05,40,083*75", "GPS 5 0"},
  };
  for (const auto& [line, text] : rows) EXPECT_EQ(after({line}), Texts{text}) << line;
  EXPECT_EQ(after({"$IIGSV,1,1,01,05,40,083,46*75"}), Texts{"GPS 5 46"});  // any talker
  EXPECT_EQ(after({"$PMGSV,1,1,01,05,40,083,46*75"}), Texts{});            // a maker's own sentence
  EXPECT_EQ(after({"$GPGSV,1,1,00*79"}), Texts{});
  EXPECT_EQ(after({"$GPGSV"}), Texts{});
}

TEST(SatelliteView, ACycleReplacesTheOneBefore) {
  const std::vector<std::string> first = {
      "$GPGSV,2,1,05,01,1,1,11,02,1,1,12,03,1,1,13,04,1,1,14*75", "$GPGSV,2,2,05,05,1,1,15*75"};
  std::vector<std::string> lines = first;
  EXPECT_EQ(after(lines), (Texts{"GPS 1 11", "GPS 2 12", "GPS 3 13", "GPS 4 14", "GPS 5 15"}));
  lines.push_back("$GPGSV,1,1,02,02,1,1,22,09,1,1,29*75");
  EXPECT_EQ(after(lines), (Texts{"GPS 2 22", "GPS 9 29"}));
  lines = first;
  lines.push_back("$GPGSV,2,1,05,01,1,1,31*75");  // in the middle of a cycle nothing is lost yet
  EXPECT_EQ(after(lines).size(), 5U);
  lines.push_back("$GPGSV,1,1,00*79");
  EXPECT_EQ(after(lines), Texts{});
}

TEST(SatelliteView, MessageNumbersMayRunAcrossTalkers) {
  std::vector<std::string> lines;
  for (int epoch = 0; epoch < 2; ++epoch) {
    lines.push_back("$GPGSV,4,1,06,01,1,1,11*75");
    lines.push_back("$GPGSV,4,2,06,02,1,1,12*75");
    lines.push_back("$GLGSV,4,3,06,65,1,1,13*75");
    lines.push_back("$GAGSV,4,4,06,03,1,1,14*75");
  }
  const Texts all = {"GLONASS 65 13", "GPS 1 11", "GPS 2 12", "Galileo 3 14"};
  EXPECT_EQ(after(lines), all);
  lines.push_back("$GPGSV,4,1,06,01,1,1,11*75");
  lines.push_back("$GLGSV,4,3,06,66,1,1,13*75");
  lines.push_back("$GAGSV,4,4,06,03,1,1,14*75");
  EXPECT_EQ(after(lines), (Texts{"GLONASS 66 13", "GPS 1 11", "Galileo 3 14"}));
}

TEST(SatelliteView, SignalsOfOneSatelliteStandSideBySide) {
  SatelliteView view;
  view.take(DecodedSentence("$GPGSV,1,1,02,05,40,083,46,07,,,*75"), 1000);
  view.take(DecodedSentence("$GPGSV,1,1,01,05,40,083,30,8*75"), 1000);
  ASSERT_EQ(view.satellites().size(), 3U);
  EXPECT_EQ(view.satellites()[0].signal, 0);
  EXPECT_EQ(view.satellites()[2].signal, 8);
  EXPECT_EQ(view.satellites()[2].snr, 30);
  EXPECT_TRUE(view.satellites()[0].positionKnown);
  EXPECT_FALSE(view.satellites()[1].positionKnown);
  const std::vector<ViewedSatellite> counted = strongestSignals(view.satellites());
  ASSERT_EQ(counted.size(), 2U);
  EXPECT_EQ(counted[0].snr, 46);
}

TEST(SatelliteView, UsedSatellitesOfEverySystem) {
  const std::vector<std::string> inView = {"$GPGSV,1,1,02,05,40,083,46,33,1,1,40*75",
                                           "$GLGSV,1,1,01,65,40,083,46*75",
                                           "$GAGSV,1,1,01,05,40,083,46*75"};
  struct {
    std::vector<std::string> gsa;
    Texts used;
  } const rows[] = {
      {{"$GPGSA,A,3,05,,,,,,,,,,,,1,2,3*00"}, {"GPS 5 46*"}},
      {{"$GNGSA,A,3,05,33,,,,,,,,,,,1,2,3*00", "$GNGSA,A,3,65,,,,,,,,,,,,1,2,3*00"},
       {"GLONASS 65 46*", "GPS 5 46*", "SBAS 33 40*"}},
      {{"$GNGSA,A,3,05,,,,,,,,,,,,1,2,3,3*00"}, {"Galileo 5 46*"}},
      {{"$GAGSA,A,3,05,,,,,,,,,,,,1,2,3*00"}, {"Galileo 5 46*"}},
      {{"$GAGSA,A,3,05,,,,,,,,,,,,1,2,3,1.2*00"}, {"Galileo 5 46*"}},  // a fourth DOP
      // The next epoch lists anew.
      {{"$GPGSA,A,3,05,,,,,,,,,,,,1,2,3*00", "$GPRMC,1", "$GPGSA,A,3,33,,,,,,,,,,,,1,2,3*00"},
       {"SBAS 33 40*"}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> lines = inView;
    lines.insert(lines.end(), row.gsa.begin(), row.gsa.end());
    Texts used = after(lines);
    std::erase_if(used, [](const std::string& text) { return !text.ends_with('*'); });
    EXPECT_EQ(used, row.used) << row.gsa[0];
  }
}

TEST(SatelliteView, SilentTalkersAreForgotten) {
  SatelliteView view;
  view.take(DecodedSentence("$GPGSV,1,1,01,05,40,083,46*75"), 1000);
  view.take(DecodedSentence("$GLGSV,1,1,01,65,40,083,46*75"), 1000);
  view.take(DecodedSentence("$GLGSV,1,1,01,65,40,083,46*75"), 31000);
  EXPECT_EQ(shown(view).size(), 2U);
  view.take(DecodedSentence("$GLGSV,1,1,01,65,40,083,46*75"), 32000);
  EXPECT_EQ(shown(view), Texts{"GLONASS 65 46"});
  view.take(DecodedSentence("$GPGSA,A,3,05,,,,,,,,,,,,1,2,3*00"), 40000);
  view.take(DecodedSentence("$GPGSV,1,1,01,05,40,083,46*75"), 40000);
  EXPECT_EQ(shown(view), (Texts{"GLONASS 65 46", "GPS 5 46*"}));
  view.take(DecodedSentence("$GPGSV,1,1,01,05,40,083,46*75"), 69000);
  view.take(DecodedSentence("$GPRMC,1"),
            71000);  // whatever line comes, and the list of used ones ages alike
  EXPECT_EQ(shown(view), Texts{"GPS 5 46"});
}

TEST(SatelliteView, HoldsNoMoreThanItsCapacity) {
  SatelliteView view;
  for (int talker = 'A'; talker <= 'Z'; ++talker) {
    for (int id = 0; id < 400; ++id) {
      std::string line = "$GPGSV,99,1,99," + std::to_string(id) + ",1,1,1*75";
      line[2] = static_cast<char>(talker);
      line.replace(10, 1, std::to_string(id + 1));
      view.take(DecodedSentence(line), 1000);
      view.take(DecodedSentence("$G" + std::string(1, static_cast<char>(talker)) + "GSA,A,3,1,2,3"),
                1000);
    }
  }
  EXPECT_EQ(view.satellites().size(), SatelliteView::kCapacity);
}

}  // namespace
}  // namespace vgps
