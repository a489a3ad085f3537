#include "configuration/clsConfiguration.h"
#include "io/FileError.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>
#include <vector>

namespace marvek {
namespace {

SectionPtr sectionOf(std::initializer_list<Section::Entry> entries) {
    auto section = std::make_shared<Section>();
    for (const auto& [key, value] : entries) {
        section->add(key, value);
    }
    return section;
}

// The settings file's shape: strings, numbers, a section holding a section.
void fillSample(clsConfiguration& configuration) {
    configuration.WriteSetting("thornwickData", std::string("C:\\TWDATA"), false);
    configuration.WriteSetting("undoLevels", 64, false);
    auto inner = sectionOf({{"A", 1.5f}});
    configuration.WriteSetting(
        "Specials", sectionOf({{"Id", 1}, {"Inner", inner}, {"Name", std::string("a\"b")}}), false);
    configuration.WriteSetting("alpha", 0.5f, false);
}

TEST(ConfigurationWrite, PrettyWithCrLf) {
    clsConfiguration configuration;
    fillSample(configuration);
    EXPECT_EQ(configuration.OutputConfiguration("\r\n", true),
              "thornwickData = \"C:\\\\TWDATA\";\r\n"
              "undoLevels = 64;\r\n"
              "\r\n"
              "Specials\r\n"
              "{\r\n"
              "\tId = 1;\r\n"
              "\t\r\n"
              "\tInner\r\n"
              "\t{\r\n"
              "\t\tA = 1.5;\r\n"
              "\t}\r\n"
              "\t\r\n"
              "\tName = \"a\\\"b\";\r\n"
              "}\r\n"
              "\r\n"
              "alpha = 0.5;\r\n");
}

TEST(ConfigurationWrite, Plain) {
    clsConfiguration configuration;
    fillSample(configuration);
    EXPECT_EQ(configuration.OutputConfiguration("", false),
              "thornwickData=\"C:\\\\TWDATA\";undoLevels=64;Specials{Id=1;Inner{A=1.5;}"
              "Name=\"a\\\"b\";}alpha=0.5;");
    EXPECT_EQ(
        configuration.OutputConfiguration("\n", false),
        "thornwickData=\"C:\\\\TWDATA\";\nundoLevels=64;\nSpecials\n{\nId=1;\nInner\n{\nA=1.5;\n}\n"
        "Name=\"a\\\"b\";\n}\nalpha=0.5;\n");
}

TEST(ConfigurationWrite, EmptySectionsAndEscapes) {
    clsConfiguration configuration;
    EXPECT_EQ(configuration.OutputConfiguration("\r\n", true), "");
    configuration.WriteSetting("e", std::make_shared<Section>(), false);
    configuration.WriteSetting("s", std::string("\\\n\r\t\"\x01\xE9"), false);
    EXPECT_EQ(configuration.OutputConfiguration("\n", true),
              "\ne\n{\n}\n\ns = \"\\\\\\n\\r\\t\\\"\x01\xE9\";\n");
}

TEST(ConfigurationWrite, NumbersAreShortAndKeepTheirDecimalPoint) {
    clsConfiguration configuration;
    configuration.WriteSetting("a", 3.0f, false);
    configuration.WriteSetting("b", 0.1f, false);
    configuration.WriteSetting("c", 1e20f, false);
    configuration.WriteSetting("d", -0.0f, false);
    configuration.WriteSetting("e", 0.1, false);
    configuration.WriteSetting("f", true, false);
    configuration.WriteSetting("g", false, false);
    configuration.WriteSetting("h", std::int16_t{-300}, false);
    configuration.WriteSetting("i", std::uint8_t{200}, false);
    configuration.WriteSetting("j", INT32_MIN, false);
    EXPECT_EQ(configuration.OutputConfiguration(";", false),
              "a=3.0;;b=0.1;;c=1.0e+20;;d=-0.0;;e=0.1;;f=-1;;g=0;;h=-300;;i=200;;"
              "j=-2147483648;;");
}

TEST(ConfigurationWrite, NumbersThatCannotBeReadBackAreRefused) {
    for (const Value& value : {Value(std::numeric_limits<float>::infinity()),
                               Value(std::numeric_limits<float>::quiet_NaN()), Value(1e300)}) {
        clsConfiguration configuration;
        configuration.WriteSetting("x", value, false);
        try {
            configuration.OutputConfiguration("\n", true);
            FAIL() << "no error";
        } catch (const ConfigurationError& error) {
            EXPECT_EQ(error.number(), ConfigurationError::overflowNumber);
        }
    }
}

TEST(ConfigurationWrite, EveryValueTypeReadsBack) {
    const float denormal = std::numeric_limits<float>::denorm_min();
    const float largest = std::numeric_limits<float>::max();
    const std::string text = std::string("tab\tline\nquote\"back\\\xFF") + '\0' + "cr\r";
    for (const bool pretty : {true, false}) {
        clsConfiguration written;
        written.WriteSetting("int", -123456, false);
        written.WriteSetting("float", 0.1f, false);
        written.WriteSetting("whole", 3.0f, false);
        written.WriteSetting("negativeZero", -0.0f, false);
        written.WriteSetting("denormal", denormal, false);
        written.WriteSetting("largest", largest, false);
        written.WriteSetting("text", text, false);
        written.WriteSetting("true", true, false);
        written.WriteSetting("false", false, false);
        written.WriteSetting("short", std::int16_t{-7}, false);
        written.WriteSetting("double", 0.1, false);
        written.WriteSetting("byte", std::uint8_t{255}, false);
        written.WriteSetting("section", sectionOf({{"", 1}, {"deeper", sectionOf({{"x", 2}})}}),
                             false);

        clsConfiguration read;
        read.InputConfiguration(written.OutputConfiguration(pretty ? "\r\n" : "", pretty));
        const auto root = read.Root(true);
        std::vector<std::string> keys;
        for (const auto& [key, value] : *root) {
            keys.push_back(key);
        }
        EXPECT_EQ(keys, (std::vector<std::string>{"int", "float", "whole", "negativeZero",
                                                  "denormal", "largest", "text", "true", "false",
                                                  "short", "double", "byte", "section"}));
        const auto value = [&](const std::string& key) { return *root->find(key); };
        EXPECT_EQ(value("int"), Value(-123456));
        EXPECT_EQ(value("float"), Value(0.1f));
        EXPECT_EQ(value("whole"), Value(3.0f));
        EXPECT_TRUE(std::signbit(std::get<float>(value("negativeZero"))));
        EXPECT_EQ(value("denormal"), Value(denormal));
        EXPECT_EQ(value("largest"), Value(largest));
        EXPECT_EQ(value("text"), Value(text));
        EXPECT_EQ(value("true"), Value(-1));
        EXPECT_EQ(value("false"), Value(0));
        EXPECT_EQ(value("short"), Value(-7));
        EXPECT_EQ(value("double"), Value(0.1f));
        EXPECT_EQ(value("byte"), Value(255));
        const auto section = std::get<SectionPtr>(value("section"));
        EXPECT_EQ(*section->find(""), Value(1));
        EXPECT_EQ(*std::get<SectionPtr>(*section->find("deeper"))->find("x"), Value(2));
    }
}

TEST(ConfigurationStore, ReadSettingByReference) {
    clsConfiguration configuration;
    auto stored = sectionOf({{"x", 1}});
    configuration.WriteSetting("s", stored, true);
    configuration.WriteSetting("n", 5, false);

    EXPECT_EQ(std::get<SectionPtr>(configuration.ReadSetting("s", 0, true)), stored);
    const auto copy = std::get<SectionPtr>(configuration.ReadSetting("s", 0, false));
    EXPECT_NE(copy, stored);
    copy->set("x", 2);
    EXPECT_EQ(*stored->find("x"), Value(1));

    EXPECT_EQ(configuration.ReadSetting("n", 0, false), Value(5));
    EXPECT_EQ(configuration.ReadSetting("absent", std::string("d"), false),
              Value(std::string("d")));
    auto fallback = std::make_shared<Section>();
    EXPECT_EQ(std::get<SectionPtr>(configuration.ReadSetting("absent", fallback, false)), fallback);
}

TEST(ConfigurationStore, WriteSettingCopiesOnlyOverAnExistingKey) {
    clsConfiguration configuration;
    auto first = sectionOf({{"x", 1}});
    configuration.WriteSetting("s", first, false);
    EXPECT_EQ(std::get<SectionPtr>(*configuration.Root(true)->find("s")), first);

    auto second = sectionOf({{"y", 2}});
    configuration.WriteSetting("s", second, false);
    const auto storedSecond = std::get<SectionPtr>(*configuration.Root(true)->find("s"));
    EXPECT_NE(storedSecond, second);
    EXPECT_EQ(*storedSecond->find("y"), Value(2));

    auto third = sectionOf({{"z", 3}});
    configuration.WriteSetting("s", third, true);
    EXPECT_EQ(std::get<SectionPtr>(*configuration.Root(true)->find("s")), third);

    configuration.WriteSetting("s", std::string("plain"), false);
    EXPECT_EQ(*configuration.Root(true)->find("s"), Value(std::string("plain")));
    EXPECT_EQ(configuration.Root(true)->count(), 1u);
}

TEST(ConfigurationStore, RootRemoveAndNew) {
    clsConfiguration configuration;
    configuration.InputConfiguration("a = 1; s { t { u = 2; } } b = 3;");
    const auto live = configuration.Root(true);
    EXPECT_EQ(configuration.Root(true), live);
    const auto copy = configuration.Root(false);
    EXPECT_NE(copy, live);
    const auto liveT = std::get<SectionPtr>(*std::get<SectionPtr>(*live->find("s"))->find("t"));
    const auto copyT = std::get<SectionPtr>(*std::get<SectionPtr>(*copy->find("s"))->find("t"));
    EXPECT_NE(copyT, liveT);
    EXPECT_EQ(*copyT->find("u"), Value(2));

    configuration.RemoveSetting("a");
    configuration.RemoveSetting("absent");
    EXPECT_EQ(configuration.OutputConfiguration("", false), "s{t{u=2;}}b=3;");
    EXPECT_EQ(*live->find("b"), Value(3));

    configuration.NewConfiguration();
    EXPECT_EQ(configuration.CurrentScanLine(), 1);
    EXPECT_TRUE(configuration.Root(true)->empty());
    EXPECT_EQ(live->count(), 2u);
}

TEST(ConfigurationStore, SectionKeepsOrderThroughRemoval) {
    Section section;
    section.add("c", 1);
    section.add("a", 2);
    section.add("b", 3);
    EXPECT_THROW(section.add("a", 4), DuplicateKeyError);
    EXPECT_TRUE(section.remove("c"));
    EXPECT_FALSE(section.remove("c"));
    section.set("a", 5);
    section.set("C", 6);
    std::vector<std::pair<std::string, Value>> entries(section.begin(), section.end());
    EXPECT_EQ(entries, (std::vector<std::pair<std::string, Value>>{{"a", 5}, {"b", 3}, {"C", 6}}));
    EXPECT_EQ(*section.find("b"), Value(3));
    EXPECT_FALSE(section.exists("c"));
}

TEST(ConfigurationStore, ASectionThatHoldsItselfIsRefusedNotFollowed) {
    clsConfiguration configuration;
    auto loop = std::make_shared<Section>();
    loop->add("self", loop);
    configuration.WriteSetting("loop", loop, true);
    EXPECT_THROW(configuration.OutputConfiguration("\n", true), ConfigurationError);
    EXPECT_THROW(configuration.Root(false), ConfigurationError);
    loop->clear();
}

TEST(ConfigurationFiles, SaveAndLoadRawLatin1Bytes) {
    test::TempDir folder;
    const auto path = folder / "marvek.cfg";
    test::writeBytes(path, {'o', 'l', 'd'});
    clsConfiguration written;
    written.WriteSetting("name", std::string("Caf\xE9"), false);
    written.WriteSetting("n", 1, false);
    written.SaveConfiguration(path, "\r\n", true);
    const std::string expected = "name = \"Caf\xE9\";\r\nn = 1;\r\n";
    EXPECT_EQ(test::readBytes(path), std::vector<std::uint8_t>(expected.begin(), expected.end()));

    clsConfiguration read;
    read.LoadConfiguration(path);
    EXPECT_EQ(read.ReadSetting("name", 0, false), Value(std::string("Caf\xE9")));
    EXPECT_EQ(read.CurrentScanLine(), 3);
}

TEST(ConfigurationFiles, ErrorsNameTheFile) {
    test::TempDir folder;
    clsConfiguration configuration;
    EXPECT_THROW(configuration.LoadConfiguration(folder / "missing.cfg"), FileError);

    const auto path = folder / "bad.cfg";
    test::writeBytes(path, {'a', '=', '1', ';', '\n', 'b', ' ', 'c', '=', '2', ';'});
    try {
        configuration.LoadConfiguration(path);
        FAIL() << "no error";
    } catch (const ConfigurationError& error) {
        EXPECT_EQ(error.file(), path);
        EXPECT_EQ(error.line(), 2);
        EXPECT_EQ(std::string(error.what()),
                  path.string() + ", line 2: Spaces not allowed in key names.");
    }
}

TEST(ConfigurationFiles, AFailedWriteLeavesTheFile) {
    test::TempDir folder;
    const auto path = folder / "keep.cfg";
    test::writeBytes(path, {'k', '=', '1', ';'});
    clsConfiguration configuration;
    configuration.WriteSetting("x", std::numeric_limits<float>::infinity(), false);
    EXPECT_THROW(configuration.SaveConfiguration(path, "\r\n", true), ConfigurationError);
    EXPECT_EQ(test::readBytes(path), (std::vector<std::uint8_t>{'k', '=', '1', ';'}));
    clsConfiguration good;
    EXPECT_THROW(good.SaveConfiguration(folder / "no" / "such.cfg", "", false), FileError);
}

} // namespace
} // namespace marvek
