#include "sim/wrapper/settings.h"

#include <gtest/gtest.h>

namespace {

using kelvo::sim::ClockMode;
using kelvo::sim::ClockSetting;
using kelvo::sim::parse_settings;
using kelvo::sim::ReportMode;
using kelvo::sim::Settings;
using kelvo::wire::HeadFamily;

Settings good(std::string_view text) {
  const auto parsed = parse_settings(text);
  EXPECT_EQ(parsed.error, "");
  return parsed.settings;
}

std::string error_of(std::string_view text) { return parse_settings(text).error; }

TEST(Settings, HaveDefaults) {
  const Settings settings = good("");
  EXPECT_EQ(settings.name, "");
  EXPECT_EQ(settings.camera.clock, std::nullopt);
  EXPECT_EQ(settings.camera.files, std::nullopt);
  EXPECT_EQ(settings.camera.corrupt, std::nullopt);
  EXPECT_EQ(settings.camera.head, std::nullopt);
  EXPECT_EQ(settings.camera.module, std::nullopt);
  EXPECT_EQ(settings.camera.seed, std::nullopt);
  EXPECT_EQ(settings.report, ReportMode::text);
  EXPECT_EQ(settings.report_file, "");
}

TEST(Settings, AreReadOneByOne) {
  EXPECT_EQ(good("name=desk_2-b").name, "desk_2-b");
  EXPECT_EQ(good("clock=sleep").camera.clock, (ClockSetting{ClockMode::sleep, 1}));
  EXPECT_EQ(good("clock=real").camera.clock, (ClockSetting{ClockMode::real, 1}));
  EXPECT_EQ(good("clock=0.1").camera.clock, (ClockSetting{ClockMode::scaled, 0.1}));
  EXPECT_EQ(good("clock=1000").camera.clock, (ClockSetting{ClockMode::scaled, 1000}));
  EXPECT_EQ(good("files=/some/where").camera.files, "/some/where");
  EXPECT_EQ(good("corrupt=3").camera.corrupt, (std::vector<std::uint32_t>{3}));
  EXPECT_EQ(good("corrupt=1+4+28").camera.corrupt, (std::vector<std::uint32_t>{1, 4, 28}));
  EXPECT_EQ(good("head=vetra").camera.head, HeadFamily::vetra);
  EXPECT_EQ(good("head=tasmere").camera.head, HeadFamily::tasmere);
  EXPECT_EQ(good("report=none").report, ReportMode::none);
  EXPECT_EQ(good("report=text").report, ReportMode::text);
  EXPECT_EQ(good("report-file=a.txt").report_file, "a.txt");
}

TEST(Settings, ArePartedByBlanksAndCommas) {
  const Settings settings = good(" clock=sleep,report=none,, files=x\tcorrupt=2\n");
  EXPECT_EQ(settings.camera.clock, (ClockSetting{ClockMode::sleep, 1}));
  EXPECT_EQ(settings.report, ReportMode::none);
  EXPECT_EQ(settings.camera.files, "x");
  EXPECT_EQ(settings.camera.corrupt, (std::vector<std::uint32_t>{2}));
}

TEST(Settings, MayHaveAnEqualsSignInAPath) { EXPECT_EQ(good("files=a=b").camera.files, "a=b"); }

TEST(Settings, NameAnUnknownOneAndListAllThatThereAre) {
  EXPECT_EQ(error_of("clok=sleep"),
            "KELVO_SIM: there is no setting \"clok\": there are name, clock, files, corrupt, "
            "head, module, seed, fault, report, report-file, real, violations");
  EXPECT_EQ(error_of("sleep"),
            "KELVO_SIM: there is no setting \"sleep\": there are name, clock, files, corrupt, "
            "head, module, seed, fault, report, report-file, real, violations");
  EXPECT_EQ(error_of("=sleep"),
            "KELVO_SIM: there is no setting \"\": there are name, clock, files, corrupt, "
            "head, module, seed, fault, report, report-file, real, violations");
  EXPECT_EQ(error_of("Clock=sleep"),
            "KELVO_SIM: there is no setting \"Clock\": there are name, clock, files, corrupt, "
            "head, module, seed, fault, report, report-file, real, violations");
}

TEST(Settings, NameAWrongValueAndListTheRightOnes) {
  EXPECT_EQ(error_of("clock=fast"),
            "KELVO_SIM: \"clock\" cannot be \"fast\": it takes real, sleep, or a number from 0.1 "
            "to 1000");
  EXPECT_EQ(
      error_of("clock="),
      "KELVO_SIM: \"clock\" cannot be \"\": it takes real, sleep, or a number from 0.1 to 1000");
  EXPECT_EQ(error_of("head=Vetra"),
            "KELVO_SIM: \"head\" cannot be \"Vetra\": it takes tasmere or vetra");
  EXPECT_EQ(error_of("report=json"),
            "KELVO_SIM: \"report\" cannot be \"json\": it takes none or text");
  EXPECT_EQ(error_of("files="), "KELVO_SIM: \"files\" cannot be \"\": it takes a folder");
  EXPECT_EQ(error_of("report-file="), "KELVO_SIM: \"report-file\" cannot be \"\": it takes a file");
}

TEST(Settings, TakeNoOtherSpeedOfTheClock) {
  for (const char* const value :
       {"0", "0.09", "1001", "-2", "+2", "2x", "1e2", "nan", "inf", "0x10", "fast", ""}) {
    EXPECT_EQ(error_of(std::string("clock=") + value),
              std::string("KELVO_SIM: \"clock\" cannot be \"") + value +
                  "\": it takes real, sleep, or a number from 0.1 to 1000");
  }
}

TEST(Settings, TakeNoOtherName) {
  const std::string longest(32, 'n');
  EXPECT_EQ(good("name=" + longest).name, longest);
  for (const std::string& value : {std::string(), std::string("a/b"), std::string("a.b"),
                                   std::string("\xC3\xA9"), longest + "n"}) {
    EXPECT_EQ(error_of("name=" + value), "KELVO_SIM: \"name\" cannot be \"" + value +
                                             "\": it takes up to 32 letters, digits, - and _");
  }
}

TEST(Settings, ReportOnASharedCameraWhenAsked) {
  EXPECT_EQ(good("name=a").report, ReportMode::none);
  EXPECT_EQ(good("name=a report=text").report, ReportMode::text);
  EXPECT_EQ(good("report=text name=a").report, ReportMode::text);
}

TEST(Settings, SayWhenAValueIsMissing) {
  EXPECT_EQ(error_of("clock"),
            "KELVO_SIM: \"clock\" has no value: write clock= and real, sleep, or a number from 0.1 "
            "to 1000");
  EXPECT_EQ(error_of("files"), "KELVO_SIM: \"files\" has no value: write files= and a folder");
}

TEST(Settings, RefuseEveryOtherWayToWriteDownloadNumbers) {
  for (const char* const value : {"", "0", "x", "1+", "+1", "1++2", "1+0", "-1", "1-2", "1.5",
                                  "4294967296", "1+2+3+4+5+6+7+8+9+10+11+12+13+14+15+16+17"}) {
    EXPECT_EQ(error_of(std::string("corrupt=") + value),
              std::string("KELVO_SIM: \"corrupt\" cannot be \"") + value +
                  "\": it takes up to 16 numbers of program downloads from 1, joined by + "
                  "(corrupt=1+4)");
  }
  EXPECT_EQ(good("corrupt=1+2+3+4+5+6+7+8+9+10+11+12+13+14+15+16").camera.corrupt->size(), 16u);
}

TEST(Settings, MayHaveSeveralFaults) {
  const Settings settings = good("fault=spi:command=62:nth=3:error=EIO clock=sleep fault=i2c:nak");
  ASSERT_EQ(settings.faults.size(), 2u);
  EXPECT_STREQ(settings.faults[0].text.data(), "spi command=62 nth=3 error=EIO");
  EXPECT_STREQ(settings.faults[1].text.data(), "i2c nak");
  EXPECT_TRUE(good("").faults.empty());
}

TEST(Settings, SayWhatIsWrongWithAFault) {
  EXPECT_EQ(error_of("fault=gpio:comand=62:kill"),
            "KELVO_SIM: \"fault\" cannot be \"gpio:comand=62:kill\": there is no word \"comand\": "
            "there are frame, direction, nth, every, times, error, kill");
  EXPECT_EQ(
      error_of("fault="),
      "KELVO_SIM: \"fault\" cannot be \"\": the fault is empty: begin with one of spi, pt5111, "
      "i2c, gpio, file");
  EXPECT_EQ(error_of("fault"),
            "KELVO_SIM: \"fault\" has no value: write fault= and a fault with : between its words "
            "(fault=spi:command=62:error=EIO)");
}

TEST(Settings, HaveNoMoreFaultsThanACamera) {
  std::string text;
  for (int i = 0; i < 32; ++i) text += "fault=gpio:kill ";
  EXPECT_EQ(good(text).faults.size(), 32u);
  EXPECT_EQ(error_of(text + "fault=spi:kill"),
            "KELVO_SIM: \"fault\" cannot be \"spi:kill\": there is room for 32 faults: remove one "
            "first");
}

TEST(Settings, AreGivenOnlyOnce) {
  EXPECT_EQ(error_of("clock=sleep clock=sleep"), "KELVO_SIM: \"clock\" is given twice");
}

TEST(Settings, AreRefusedForTheFirstMistake) {
  EXPECT_EQ(error_of("clock=sleep report=x clok=y"),
            "KELVO_SIM: \"report\" cannot be \"x\": it takes none or text");
}

TEST(Settings, NameTheLens) {
  using kelvo::wire::LensModule;
  EXPECT_EQ(good("module=de015").camera.module, LensModule::de015);
  EXPECT_EQ(good("module=df033").camera.module, LensModule::df033);
  EXPECT_EQ(good("module=t5391").camera.module, LensModule::t5391);
  for (const char* const value : {"DE015", "7", "de01", "de0155", ""}) {
    EXPECT_EQ(error_of(std::string("module=") + value),
              std::string("KELVO_SIM: \"module\" cannot be \"") + value +
                  "\": it takes de015, df033 or t5391");
  }
}

TEST(Settings, TakeASeedOf64Bits) {
  EXPECT_EQ(good("seed=0").camera.seed, 0u);
  EXPECT_EQ(good("seed=18446744073709551615").camera.seed, 18446744073709551615u);
  for (const char* const value : {"18446744073709551616", "-1", "+1", "1x", "0x1", ""}) {
    EXPECT_EQ(error_of(std::string("seed=") + value),
              std::string("KELVO_SIM: \"seed\" cannot be \"") + value +
                  "\": it takes a number below 2^64");
  }
}

TEST(Settings, EndTheProcessWithTwo) { EXPECT_EQ(kelvo::sim::wrong_settings_exit_code, 2); }

}  // namespace
