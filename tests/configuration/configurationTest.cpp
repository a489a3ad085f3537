#include "configuration/clsConfiguration.h"
#include "io/FileError.h"
#include "support/TempDir.h"
#include "support/expect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>
#include <vector>

namespace marvek::test {
namespace {

using namespace std::string_literals;

SectionPtr parse(std::string_view text) {
    clsConfiguration configuration;
    configuration.InputConfiguration(text);
    return configuration.Root(true);
}

template <typename T> T get(const Section& section, const std::string& key) {
    const T* typed = section.find(key) ? std::get_if<T>(section.find(key)) : nullptr;
    EXPECT_TRUE(typed) << key;
    return typed ? *typed : T{};
}

std::vector<std::string> keys(const Section& section) {
    std::vector<std::string> names;
    for (const auto& [key, value] : section) {
        names.push_back(key);
    }
    return names;
}

std::vector<Value> valuesOf(const Section& section) {
    std::vector<Value> values;
    for (const auto& [key, value] : section) {
        values.push_back(value);
    }
    return values;
}

// Parses text that must fail and returns the error.
ConfigurationError parseError(std::string_view text) {
    clsConfiguration configuration;
    try {
        configuration.InputConfiguration(text);
    } catch (const ConfigurationError& error) {
        EXPECT_EQ(error.line(), configuration.CurrentScanLine());
        return error;
    }
    ADD_FAILURE() << "no error for: " << text;
    return ConfigurationError(0, "");
}

TEST(ConfigurationParse, NumbersAreIntegersUnlessTheyHoldADecimalPointWithinTheLimits) {
    const auto root = parse("a = 1; b = 1.5; c = 1,5; d = -3; e = &H10; f = &hff;\n"
                            "g =   42  ; h = -0.25; i = .5; j = 2.5e3; k = &HFFFFFFFF; l = 0,;");
    EXPECT_EQ(valuesOf(*root), (std::vector<Value>{1, 1.5f, 1.5f, -3, 16, 255, 42, -0.25f, 0.5f,
                                                   2500.0f, -1, 0.0f}));
    EXPECT_EQ(valuesOf(*parse("min = -2147483648; max = 2147483647; third = 0.1; tiny = 1.0e-60;")),
              (std::vector<Value>{INT32_MIN, INT32_MAX, 0.1f, 0.0f}));
    EXPECT_EQ(parseError("a = 2147483648;").number(), ConfigurationError::overflowNumber);
    EXPECT_EQ(parseError("a = &H100000000;").number(), ConfigurationError::overflowNumber);
    EXPECT_EQ(parseError("a = 1.0e39;").number(), ConfigurationError::overflowNumber);
}

TEST(ConfigurationParse, NumberTextThatDoesNotConvertIsATypeMismatch) {
    for (const char* text : {"a = 5b;", "a = 1 2;", "a = 1.2.3;", "a = -;", "a = &H;", "a = e5;",
                             "a = 1.5e;", "a = 5\n}\n;"}) {
        const auto error = parseError(text);
        EXPECT_EQ(error.number(), ConfigurationError::typeMismatchNumber) << text;
    }
    // The number runs to its ";", across line feeds, which it counts.
    EXPECT_EQ(parseError("a = 1\nb = 2;").line(), 2);
}

TEST(ConfigurationParse, StringsEscapesAndRawWhiteSpace) {
    const auto root =
        parse("a = \"plain\"; b = \"q\\\"uote\\\\\"; c = \"\\n\\r\\t\"; d = \"\\065\\q\";\n"
              "e = \"\\255\\0009\"; f = \"\"; g = \"semi;colon{}=/\";");
    EXPECT_EQ(valuesOf(*root), (std::vector<Value>{"plain"s, "q\"uote\\"s, "\n\r\t"s, "Aq"s,
                                                   "\xFF\0\x39"s, ""s, "semi;colon{}=/"s}));
    EXPECT_EQ(parseError("a = \"\\256\";").number(), ConfigurationError::invalidArgumentNumber);
    EXPECT_EQ(parseError("a = \"\\1x2\";").number(), ConfigurationError::typeMismatchNumber);
    // Raw tabs and carriage returns vanish; line feeds are counted.
    clsConfiguration configuration;
    configuration.InputConfiguration("a = \"x\ty\r\nz\";\r\n\tb\t=\t1;\r\n");
    EXPECT_EQ(valuesOf(*configuration.Root(true)), (std::vector<Value>{"xyz"s, 1}));
    EXPECT_EQ(configuration.CurrentScanLine(), 4);
}

TEST(ConfigurationParse, KeysKeepOrderAndCaseAreTrimmedAndNest) {
    const auto root = parse("  zeta = 1;\nAlpha=2;alpha = 3;\n  middle  \n= 4;");
    EXPECT_EQ(keys(*root), (std::vector<std::string>{"zeta", "Alpha", "alpha", "middle"}));
    EXPECT_EQ(get<std::int32_t>(*root, "middle"), 4);
    const auto nested =
        parse("S\n{\n\tOne\n\t{\n\t\tId = 1;\n\t}\n\tTwo { Id = 2; }\n}\nafter = 1;");
    EXPECT_EQ(keys(*get<SectionPtr>(*nested, "S")), (std::vector<std::string>{"One", "Two"}));
    EXPECT_EQ(get<std::int32_t>(*get<SectionPtr>(*get<SectionPtr>(*nested, "S"), "Two"), "Id"), 2);
}

TEST(ConfigurationParse, BareKeysAndEmptyAssignments) {
    // "name;" defines 0; "= ;" adds nothing and leaves its key in front of the next.
    const auto root = parse("flag; a= ;b = 7; c=\n;d;");
    EXPECT_EQ(keys(*root), (std::vector<std::string>{"flag", "ab", "cd"}));
    EXPECT_EQ(valuesOf(*root), (std::vector<Value>{0, 7, 0}));
    EXPECT_EQ(get<std::int32_t>(*parse("= 5;"), ""), 5);
}

TEST(ConfigurationParse, CommentsAndUnfinishedInputKeepWhatWasComplete) {
    clsConfiguration configuration;
    configuration.InputConfiguration("// head\na = 1; /* one\ntwo\n */ b = 2; /*/ c = 3;\n"
                                     "d /* inside */ = 4; e = 5; / f = 6;");
    EXPECT_EQ(keys(*configuration.Root(true)),
              (std::vector<std::string>{"a", "b", "c", "d", "e", "f"}));
    EXPECT_EQ(configuration.CurrentScanLine(), 5);
    // Unterminated comments end the parse quietly with what was read.
    EXPECT_EQ(keys(*parse("a = 1; /* never closed\nb = 2;")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("a = 1;\n// last line")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("s { a = 1; // no end")), (std::vector<std::string>{"s"}));
    // So does any unfinished input.
    EXPECT_EQ(keys(*parse("a = 1; } b = 2;")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("a = 1; b = \"open")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("a = 1; b = 12")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*get<SectionPtr>(*parse("s { a = 1;"), "s")), (std::vector<std::string>{"a"}));
}

TEST(ConfigurationParse, SpacesInKeyNames) {
    for (const char* text : {"two words = 1;", "two\nlines = 1;", "two words { }"}) {
        const auto error = parseError(text);
        EXPECT_EQ(error.number(), ConfigurationError::syntaxErrorNumber) << text;
        EXPECT_EQ(error.description(), "Spaces not allowed in key names.") << text;
    }
    const auto error = parseError("a = 1;\n\nb c = 2;");
    EXPECT_EQ(error.line(), 3);
    EXPECT_STREQ(error.what(), "line 3: Spaces not allowed in key names.");
}

TEST(ConfigurationParse, InvalidAssignmentNamesTheLineBeforeTheCounter) {
    // The text, the line the message names and the line counter.
    for (const auto& [text, messageLine, counter] :
         {std::tuple{"a = \"x\"\nb = \"y\";", 1, 2},
          {"x = 1;\ny = 2;\na = \"x\"\nb = \"y\";", 3, 4},
          {"x = 1;\ny = 2;\na = \"x\" b = \"y\";", 2, 3},
          {"a = \"x\" b = 1;", 0, 1},
          {"a = {", 0, 1}}) {
        const auto error = parseError(text);
        EXPECT_EQ(error.number(), ConfigurationError::syntaxErrorNumber);
        EXPECT_EQ(error.description(), "Invalid assignment on line " + std::to_string(messageLine) +
                                           ". Forgot an assignment terminator?")
            << text;
        EXPECT_EQ(error.line(), counter) << text;
    }
}

TEST(ConfigurationParse, DuplicateKeysFailWithTheirOwnError) {
    const auto error =
        failureOf<DuplicateKeyError>([] { parse("a = 1;\nb = 2;\na = \"again\";"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), ConfigurationError::duplicateKeyNumber);
    EXPECT_EQ(error->key(), "a");
    EXPECT_EQ(error->line(), 3);
    // The same key in different sections is fine.
    EXPECT_NO_THROW(parse("a = 1; s { a = 2; }"));
}

TEST(ConfigurationParse, AFailedParseLeavesTheRootAndTellsHowFarItGot) {
    clsConfiguration configuration;
    EXPECT_EQ(configuration.CurrentScanLine(), 0);
    configuration.InputConfiguration("kept = 1;");
    const auto before = configuration.Root(true);
    EXPECT_THROW(configuration.InputConfiguration("x = 1;\n\n\ny = oops;"), ConfigurationError);
    EXPECT_EQ(configuration.Root(true), before);
    EXPECT_EQ(get<std::int32_t>(*configuration.Root(true), "kept"), 1);
    EXPECT_EQ(configuration.CurrentScanLine(), 4);
    // Nesting is bounded.
    EXPECT_NO_THROW(parse(std::string(200, '{')));
    EXPECT_EQ(parseError(std::string(100000, '{')).number(), ConfigurationError::syntaxErrorNumber);
}

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

TEST(ConfigurationWrite, PrettyOrPlainWithAnyLineEnd) {
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
    EXPECT_EQ(configuration.OutputConfiguration("", false),
              "thornwickData=\"C:\\\\TWDATA\";undoLevels=64;Specials{Id=1;Inner{A=1.5;}"
              "Name=\"a\\\"b\";}alpha=0.5;");
    EXPECT_EQ(
        configuration.OutputConfiguration("\n", false),
        "thornwickData=\"C:\\\\TWDATA\";\nundoLevels=64;\nSpecials\n{\nId=1;\nInner\n{\nA=1.5;\n}\n"
        "Name=\"a\\\"b\";\n}\nalpha=0.5;\n");
    // Empty sections and escapes.
    clsConfiguration small;
    EXPECT_EQ(small.OutputConfiguration("\r\n", true), "");
    small.WriteSetting("e", std::make_shared<Section>(), false);
    small.WriteSetting("s", std::string("\\\n\r\t\"\x01\xE9"), false);
    EXPECT_EQ(small.OutputConfiguration("\n", true),
              "\ne\n{\n}\n\ns = \"\\\\\\n\\r\\t\\\"\x01\xE9\";\n");
}

TEST(ConfigurationWrite, NumbersAreShortAndKeepTheirDecimalPointOrAreRefused) {
    clsConfiguration configuration;
    const Value values[] = {
        3.0f,     0.1f, 1e20f, -0.0f, 0.1, true, false, std::int16_t{-300}, std::uint8_t{200},
        INT32_MIN};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        configuration.WriteSetting(std::string(1, static_cast<char>('a' + i)), values[i], false);
    }
    EXPECT_EQ(configuration.OutputConfiguration(";", false),
              "a=3.0;;b=0.1;;c=1.0e+20;;d=-0.0;;e=0.1;;f=-1;;g=0;;h=-300;;i=200;;"
              "j=-2147483648;;");

    for (const Value& value : {Value(std::numeric_limits<float>::infinity()),
                               Value(std::numeric_limits<float>::quiet_NaN()), Value(1e300)}) {
        clsConfiguration unreadable;
        unreadable.WriteSetting("x", value, false);
        const auto error =
            failureOf<ConfigurationError>([&] { unreadable.OutputConfiguration("\n", true); });
        EXPECT_TRUE(error && error->number() == ConfigurationError::overflowNumber);
    }
}

TEST(ConfigurationWrite, EveryValueTypeReadsBack) {
    const float denormal = std::numeric_limits<float>::denorm_min();
    const float largest = std::numeric_limits<float>::max();
    const std::string text = std::string("tab\tline\nquote\"back\\\xFF") + '\0' + "cr\r";
    // Every type a setting can hold, and what reading the text gives back.
    const Value values[] = {-123456,  0.1f,
                            3.0f,     -0.0f,
                            denormal, largest,
                            text,     true,
                            false,    std::int16_t{-7},
                            0.1,      std::uint8_t{255}};
    const Value readBack[] = {-123456, 0.1f, 3.0f, -0.0f, denormal, largest,
                              text,    -1,   0,    -7,    0.1f,     255};
    for (const bool pretty : {true, false}) {
        clsConfiguration written;
        for (std::size_t i = 0; i < std::size(values); ++i) {
            written.WriteSetting("k" + std::to_string(i), values[i], false);
        }
        written.WriteSetting("section", sectionOf({{"", 1}, {"deeper", sectionOf({{"x", 2}})}}),
                             false);

        clsConfiguration read;
        read.InputConfiguration(written.OutputConfiguration(pretty ? "\r\n" : "", pretty));
        const auto root = read.Root(true);
        ASSERT_EQ(root->count(), std::size(values) + 1);
        auto entry = root->begin();
        for (std::size_t i = 0; i < std::size(values); ++i, ++entry) {
            EXPECT_EQ(entry->first, "k" + std::to_string(i));
            EXPECT_EQ(entry->second, readBack[i]) << i;
        }
        EXPECT_TRUE(std::signbit(std::get<float>(*root->find("k3"))));
        const auto section = std::get<SectionPtr>(*root->find("section"));
        EXPECT_EQ(*section->find(""), Value(1));
        EXPECT_EQ(*std::get<SectionPtr>(*section->find("deeper"))->find("x"), Value(2));
    }
}

// Reading and writing a section by reference shares it; otherwise a copy is
// taken, and writing over an existing key copies into it.
TEST(ConfigurationStore, SectionsAreSharedOnlyByReference) {
    clsConfiguration configuration;
    const auto stored = sectionOf({{"x", 1}});
    const auto section = [&] { return std::get<SectionPtr>(*configuration.Root(true)->find("s")); };
    configuration.WriteSetting("s", stored, false);
    EXPECT_EQ(section(), stored) << "a new key takes the section itself";
    configuration.WriteSetting("n", 5, false);
    EXPECT_EQ(std::get<SectionPtr>(configuration.ReadSetting("s", 0, true)), stored);
    const auto copy = std::get<SectionPtr>(configuration.ReadSetting("s", 0, false));
    EXPECT_NE(copy, stored);
    copy->set("x", 2);
    EXPECT_EQ(*stored->find("x"), Value(1));
    EXPECT_EQ(configuration.ReadSetting("n", 0, false), Value(5));
    EXPECT_EQ(configuration.ReadSetting("absent", "d"s, false), Value("d"s));
    const auto fallback = std::make_shared<Section>();
    EXPECT_EQ(std::get<SectionPtr>(configuration.ReadSetting("absent", fallback, false)), fallback);

    const auto second = sectionOf({{"y", 2}});
    configuration.WriteSetting("s", second, false);
    EXPECT_NE(section(), second);
    EXPECT_EQ(*section()->find("y"), Value(2));
    const auto third = sectionOf({{"z", 3}});
    configuration.WriteSetting("s", third, true);
    EXPECT_EQ(section(), third);
    configuration.WriteSetting("s", "plain"s, false);
    EXPECT_EQ(*configuration.Root(true)->find("s"), Value("plain"s));
    EXPECT_EQ(configuration.Root(true)->count(), 2u);
}

TEST(ConfigurationStore, RootRemoveAndNewAndNoLoops) {
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
    // A section that holds itself is refused, not followed.
    auto loop = std::make_shared<Section>();
    loop->add("self", loop);
    configuration.WriteSetting("loop", loop, true);
    EXPECT_THROW(configuration.OutputConfiguration("\n", true), ConfigurationError);
    EXPECT_THROW(configuration.Root(false), ConfigurationError);
    loop->clear();
}

TEST(ConfigurationFiles, SaveAndLoadRawLatin1BytesAndErrorsNameTheFile) {
    TempDir folder;
    const auto path = folder / "marvek.cfg";
    writeBytes(path, {'o', 'l', 'd'});
    clsConfiguration configuration;
    configuration.WriteSetting("name", std::string("Caf\xE9"), false);
    configuration.WriteSetting("n", 1, false);
    configuration.SaveConfiguration(path, "\r\n", true);
    const std::string expected = "name = \"Caf\xE9\";\r\nn = 1;\r\n";
    EXPECT_EQ(readBytes(path), std::vector<std::uint8_t>(expected.begin(), expected.end()));
    clsConfiguration read;
    read.LoadConfiguration(path);
    EXPECT_EQ(read.ReadSetting("name", 0, false), Value(std::string("Caf\xE9")));
    EXPECT_EQ(read.CurrentScanLine(), 3);
    // A failed write leaves the file.
    configuration.WriteSetting("x", std::numeric_limits<float>::infinity(), false);
    EXPECT_THROW(configuration.SaveConfiguration(path, "\r\n", true), ConfigurationError);
    EXPECT_EQ(readBytes(path), std::vector<std::uint8_t>(expected.begin(), expected.end()));
    EXPECT_THROW(read.SaveConfiguration(folder / "no" / "such.cfg", "", false), FileError);

    EXPECT_THROW(read.LoadConfiguration(folder / "missing.cfg"), FileError);
    writeBytes(path, {'a', '=', '1', ';', '\n', 'b', ' ', 'c', '=', '2', ';'});
    const auto error = failureOf<ConfigurationError>([&] { read.LoadConfiguration(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->file(), path);
    EXPECT_EQ(error->line(), 2);
    EXPECT_EQ(error->what(), path.string() + ", line 2: Spaces not allowed in key names.");

    // A string without its ";" on line 22 is noticed on line 23; the message
    // names line 22 only.
    std::string text;
    for (int line = 1; line < 22; ++line) {
        text += "k" + std::to_string(line) + " = 1;\n";
    }
    text += "name = \"x\"\nnext = 2;\n";
    writeText(path, text);
    const auto missing = failureOf<ConfigurationError>([&] { read.LoadConfiguration(path); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->line(), 23);
    EXPECT_EQ(missing->what(),
              path.string() + ": Invalid assignment on line 22. Forgot an assignment terminator?");
    EXPECT_EQ(missing->located(),
              "Invalid assignment on line 22. Forgot an assignment terminator?");
    EXPECT_EQ(missing->messageFor("other.cfg"),
              "other.cfg: Invalid assignment on line 22. Forgot an assignment terminator?");
    EXPECT_EQ(error->messageFor("other.cfg"),
              "other.cfg, line 2: Spaces not allowed in key names.");
}

} // namespace
} // namespace marvek::test
