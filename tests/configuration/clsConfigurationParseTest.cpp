#include "configuration/clsConfiguration.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <variant>

namespace marvek {
namespace {

SectionPtr parse(std::string_view text) {
    clsConfiguration configuration;
    configuration.InputConfiguration(text);
    return configuration.Root(true);
}

template <typename T> T get(const Section& section, const std::string& key) {
    const Value* value = section.find(key);
    if (value == nullptr) {
        ADD_FAILURE() << "no key " << key;
        return T{};
    }
    const T* typed = std::get_if<T>(value);
    if (typed == nullptr) {
        ADD_FAILURE() << "key " << key << " holds alternative " << value->index();
        return T{};
    }
    return *typed;
}

std::vector<std::string> keys(const Section& section) {
    std::vector<std::string> names;
    for (const auto& [key, value] : section) {
        names.push_back(key);
    }
    return names;
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

TEST(ConfigurationParse, NumbersAreIntegersUnlessTheyHoldADecimalPoint) {
    const auto root = parse("a = 1; b = 1.5; c = 1,5; d = -3; e = &H10; f = &hff;\n"
                            "g =   42  ; h = -0.25; i = .5; j = 2.5e3; k = &HFFFFFFFF; l = 0,;");
    EXPECT_EQ(get<std::int32_t>(*root, "a"), 1);
    EXPECT_EQ(get<float>(*root, "b"), 1.5f);
    EXPECT_EQ(get<float>(*root, "c"), 1.5f);
    EXPECT_EQ(get<std::int32_t>(*root, "d"), -3);
    EXPECT_EQ(get<std::int32_t>(*root, "e"), 16);
    EXPECT_EQ(get<std::int32_t>(*root, "f"), 255);
    EXPECT_EQ(get<std::int32_t>(*root, "g"), 42);
    EXPECT_EQ(get<float>(*root, "h"), -0.25f);
    EXPECT_EQ(get<float>(*root, "i"), 0.5f);
    EXPECT_EQ(get<float>(*root, "j"), 2500.0f);
    EXPECT_EQ(get<std::int32_t>(*root, "k"), -1);
    EXPECT_EQ(get<float>(*root, "l"), 0.0f);
}

TEST(ConfigurationParse, IntegerLimitsAndFloatRounding) {
    const auto root = parse("min = -2147483648; max = 2147483647; third = 0.1; tiny = 1.0e-60;");
    EXPECT_EQ(get<std::int32_t>(*root, "min"), INT32_MIN);
    EXPECT_EQ(get<std::int32_t>(*root, "max"), INT32_MAX);
    EXPECT_EQ(get<float>(*root, "third"), 0.1f);
    EXPECT_EQ(get<float>(*root, "tiny"), 0.0f);
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

TEST(ConfigurationParse, StringsAndEscapes) {
    const auto root =
        parse("a = \"plain\"; b = \"q\\\"uote\\\\\"; c = \"\\n\\r\\t\"; d = \"\\065\\q\";\n"
              "e = \"\\255\\0009\"; f = \"\"; g = \"semi;colon{}=/\";");
    EXPECT_EQ(get<std::string>(*root, "a"), "plain");
    EXPECT_EQ(get<std::string>(*root, "b"), "q\"uote\\");
    EXPECT_EQ(get<std::string>(*root, "c"), "\n\r\t");
    EXPECT_EQ(get<std::string>(*root, "d"), "Aq");
    EXPECT_EQ(get<std::string>(*root, "e"), std::string("\xFF") + '\0' + "9");
    EXPECT_EQ(get<std::string>(*root, "f"), "");
    EXPECT_EQ(get<std::string>(*root, "g"), "semi;colon{}=/");

    const auto error = parseError("a = \"\\256\";");
    EXPECT_EQ(error.number(), ConfigurationError::invalidArgumentNumber);
    EXPECT_EQ(parseError("a = \"\\1x2\";").number(), ConfigurationError::typeMismatchNumber);
}

TEST(ConfigurationParse, RawTabsAndCarriageReturnsVanishAndLineFeedsAreCounted) {
    clsConfiguration configuration;
    configuration.InputConfiguration("a = \"x\ty\r\nz\";\r\n\tb\t=\t1;\r\n");
    const auto root = configuration.Root(true);
    EXPECT_EQ(get<std::string>(*root, "a"), "xyz");
    EXPECT_EQ(get<std::int32_t>(*root, "b"), 1);
    EXPECT_EQ(configuration.CurrentScanLine(), 4);
}

TEST(ConfigurationParse, KeysKeepOrderAndCaseAndAreTrimmed) {
    const auto root = parse("  zeta = 1;\nAlpha=2;alpha = 3;\n  middle  \n= 4;");
    EXPECT_EQ(keys(*root), (std::vector<std::string>{"zeta", "Alpha", "alpha", "middle"}));
    EXPECT_EQ(get<std::int32_t>(*root, "middle"), 4);
}

TEST(ConfigurationParse, BareKeysAndEmptyAssignments) {
    // "name;" defines 0; "= ;" adds nothing and leaves its key in front of the next.
    const auto root = parse("flag; a= ;b = 7; c=\n;d;");
    EXPECT_EQ(keys(*root), (std::vector<std::string>{"flag", "ab", "cd"}));
    EXPECT_EQ(get<std::int32_t>(*root, "flag"), 0);
    EXPECT_EQ(get<std::int32_t>(*root, "ab"), 7);
    EXPECT_EQ(get<std::int32_t>(*root, "cd"), 0);
    EXPECT_EQ(get<std::int32_t>(*parse("= 5;"), ""), 5);
}

TEST(ConfigurationParse, NestedSections) {
    const auto root =
        parse("Specials\n{\n\tOne\n\t{\n\t\tId = 1;\n\t}\n\tTwo { Id = 2; }\n}\nafter = 1;");
    EXPECT_EQ(keys(*root), (std::vector<std::string>{"Specials", "after"}));
    const auto specials = get<SectionPtr>(*root, "Specials");
    ASSERT_TRUE(specials);
    EXPECT_EQ(keys(*specials), (std::vector<std::string>{"One", "Two"}));
    EXPECT_EQ(get<std::int32_t>(*get<SectionPtr>(*specials, "Two"), "Id"), 2);
}

TEST(ConfigurationParse, Comments) {
    clsConfiguration configuration;
    configuration.InputConfiguration("// head\na = 1; /* one\ntwo\n */ b = 2; /*/ c = 3;\n"
                                     "d /* inside */ = 4; e = 5; / f = 6;");
    const auto root = configuration.Root(true);
    EXPECT_EQ(keys(*root), (std::vector<std::string>{"a", "b", "c", "d", "e", "f"}));
    EXPECT_EQ(configuration.CurrentScanLine(), 5);

    // Unterminated comments end the parse quietly with what was read.
    EXPECT_EQ(keys(*parse("a = 1; /* never closed\nb = 2;")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("a = 1;\n// last line")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("s { a = 1; // no end")), (std::vector<std::string>{"s"}));
}

TEST(ConfigurationParse, UnfinishedInputKeepsWhatWasComplete) {
    EXPECT_EQ(keys(*parse("a = 1; } b = 2;")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("a = 1; b = \"open")), (std::vector<std::string>{"a"}));
    EXPECT_EQ(keys(*parse("a = 1; b = 12")), (std::vector<std::string>{"a"}));
    const auto root = parse("s { a = 1;");
    EXPECT_EQ(keys(*get<SectionPtr>(*root, "s")), (std::vector<std::string>{"a"}));
}

TEST(ConfigurationParse, SpacesInKeyNames) {
    for (const char* text : {"two words = 1;", "two\nlines = 1;", "two words { }"}) {
        const auto error = parseError(text);
        EXPECT_EQ(error.number(), ConfigurationError::syntaxErrorNumber) << text;
        EXPECT_EQ(error.description(), "Spaces not allowed in key names.") << text;
    }
    EXPECT_EQ(parseError("a = 1;\n\nb c = 2;").line(), 3);
}

TEST(ConfigurationParse, InvalidAssignmentNamesTheLineBeforeTheCounter) {
    struct Case {
        const char* text;
        int messageLine;
        int counter;
    };
    for (const auto& [text, messageLine, counter] : {
             Case{"a = \"x\"\nb = \"y\";", 1, 2},
             Case{"x = 1;\ny = 2;\na = \"x\"\nb = \"y\";", 3, 4},
             Case{"x = 1;\ny = 2;\na = \"x\" b = \"y\";", 2, 3},
             Case{"a = \"x\" b = 1;", 0, 1},
             Case{"a = {", 0, 1},
         }) {
        const auto error = parseError(text);
        EXPECT_EQ(error.number(), ConfigurationError::syntaxErrorNumber);
        EXPECT_EQ(static_cast<std::uint32_t>(error.number()), 0x80040000u);
        EXPECT_EQ(error.description(), "Invalid assignment on line " + std::to_string(messageLine) +
                                           ". Forgot an assignment terminator?")
            << text;
        EXPECT_EQ(error.line(), counter) << text;
    }
}

TEST(ConfigurationParse, DuplicateKeysFailWithTheirOwnError) {
    try {
        parse("a = 1;\nb = 2;\na = \"again\";");
        FAIL() << "no error";
    } catch (const DuplicateKeyError& error) {
        EXPECT_EQ(error.number(), ConfigurationError::duplicateKeyNumber);
        EXPECT_EQ(error.key(), "a");
        EXPECT_EQ(error.line(), 3);
    }
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
}

TEST(ConfigurationParse, NestingIsBounded) {
    EXPECT_NO_THROW(parse(std::string(200, '{')));
    const auto error = parseError(std::string(100000, '{'));
    EXPECT_EQ(error.number(), ConfigurationError::syntaxErrorNumber);
}

TEST(ConfigurationParse, ErrorTextNamesTheLine) {
    const auto error = parseError("a = 1;\nb c = 2;");
    EXPECT_STREQ(error.what(), "line 2: Spaces not allowed in key names.");
}

} // namespace
} // namespace marvek
