// Layer data as text both ways, and the XML around it: the quick paths
// (eight bytes at a time, CSV read before the XML parser, the map written
// without a document) must agree with the plain reading of the same text.
#include "maps/mapFiles.h"
#include "maps/xmlWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <random>

namespace marvek::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// What a CSV text holds when read a character at a time: the gids, or the
// refusal's text.
std::string plainReading(std::string_view text) {
    std::string result;
    std::size_t at = 0;
    std::size_t cell = 0;
    const auto skipBlanks = [&] {
        while (at < text.size() && std::string_view(" \t\r\n").find(text[at]) != text.npos) {
            ++at;
        }
    };
    skipBlanks();
    while (at < text.size()) {
        const std::size_t start = at;
        std::uint64_t gid = 0;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9' && gid <= UINT32_MAX) {
            gid = gid * 10 + static_cast<std::uint64_t>(text[at++] - '0');
        }
        if (at == start || gid > UINT32_MAX) {
            return "refused at cell " + std::to_string(cell);
        }
        result += std::to_string(gid) + ";";
        ++cell;
        skipBlanks();
        if (at < text.size() && text[at] == ',') {
            ++at;
            skipBlanks();
        }
    }
    return result;
}

std::string decoded(std::string_view text) {
    try {
        std::string result;
        for (const std::uint32_t gid : decodeLayer(text, "csv", "")) {
            result += std::to_string(gid) + ";";
        }
        return result;
    } catch (const std::runtime_error& error) {
        const std::string why = error.what();
        return "refused at cell " + why.substr(why.rfind(' ') + 1, why.size() - why.rfind(' ') - 2);
    }
}

std::vector<std::uint32_t> csvGids(std::string_view text) {
    return decodeLayer(text, "csv", "");
}

TEST(CsvLayerData, ReadsWhatTiledAndPeopleWrite) {
    EXPECT_THAT(csvGids("\n1,2,\n3,4\n"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(csvGids("\r\n1,2,\r\n3,4\r\n"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(csvGids(" 1 , 2\t,3 "), ElementsAre(1, 2, 3));
    // A comma may be missing between numbers, and may follow the last.
    EXPECT_THAT(csvGids("1 2\n3"), ElementsAre(1, 2, 3));
    EXPECT_THAT(csvGids("1,2,"), ElementsAre(1, 2));
    EXPECT_THAT(csvGids("0007,4294967295"), ElementsAre(7, 4294967295u));
    EXPECT_THAT(csvGids(" \n"), ElementsAre());
    // Runs the quick paths take, broken by what they do not.
    EXPECT_THAT(csvGids("0,0,0,0,0,0,0,0,1,2,3,4\n"),
                ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4));
    EXPECT_THAT(csvGids("12,34,56,78,9,0,1,2,345,6"),
                ElementsAre(12, 34, 56, 78, 9, 0, 1, 2, 345, 6));
}

TEST(CsvLayerData, RefusalsNameTheTextAndTheCell) {
    const auto refusal = [](std::string_view text) {
        try {
            decodeLayer(text, "csv", "");
        } catch (const std::runtime_error& error) {
            return std::string(error.what());
        }
        return std::string("taken");
    };
    EXPECT_EQ(refusal("1,2,3,4,5,6,7,+8,9"),
              "the layer's CSV data holds \"+8,9\" where a tile number belongs (cell 7)");
    EXPECT_THAT(refusal("1,2,3,4,5,6,7,8,9,,1"), HasSubstr("holds \",1\""));
    EXPECT_THAT(refusal(",1"), HasSubstr("(cell 0)"));
    EXPECT_THAT(refusal("0,0,0,0,0,0,0,0,4294967296"), HasSubstr("\"4294967296\" where"));
    EXPECT_THAT(refusal("0,0,0,0,0,0,0,0,99999999999999999999,1"), HasSubstr("(cell 8)"));
    EXPECT_THAT(refusal("1,0x2"), HasSubstr("\"x2\""));
    EXPECT_THAT(refusal("1;2"), HasSubstr("\";2\""));
}

// Texts of numbers of every length and every separator, cut anywhere, read
// as the plain reading reads them.
TEST(CsvLayerData, AgreesWithThePlainReadingOnAnyText) {
    const std::vector<std::string> pieces = {
        "0",  "7",  "12", "345", "1025", "00", "4294967295", "4294967296", "123456789012",
        ",",  ",",  ",",  ",",   ",\n",  " ",  "\r\n",       "\t",         ",,",
        "+1", "-1", "x",  "<",   "\x80", ""};
    std::mt19937 random(24);
    std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(0, 60);
    std::uniform_int_distribution<int> shortOnes(0, 3);
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        // Now and then a text longer than the reader's block of gids.
        const int count = round % 100 == 1 ? 3000 : length(random);
        for (int i = 0; i < count; ++i) {
            // Mostly the short numbers and commas of a level's layers.
            const std::size_t chosen = round % 2 == 0 ? piece(random) : piece(random) % 4;
            text += pieces[chosen];
            if (round % 2 != 0 && (count > 60 || shortOnes(random) != 0)) {
                text += ",";
            }
        }
        ASSERT_EQ(decoded(text), plainReading(text)) << text;
    }
}

TEST(CsvLayerData, IsWrittenInRowsAsTiledWritesIt) {
    std::vector<std::uint32_t> gids;
    std::mt19937 random(7);
    std::uniform_int_distribution<int> digits(0, 9);
    for (int i = 0; i < 300; ++i) {
        // Runs of single digits, for the quick path, and longer numbers.
        gids.push_back(i % 37 < 20 ? static_cast<std::uint32_t>(digits(random))
                                   : static_cast<std::uint32_t>(i) * 1000003u);
    }
    for (const std::int32_t width : {1, 7, 8, 9, 30, 300, 0}) {
        std::string expected = "\n";
        for (std::size_t i = 0; i < gids.size(); ++i) {
            expected += std::to_string(gids[i]) + (i + 1 < gids.size() ? "," : "");
            expected += width > 0 && (i + 1) % static_cast<std::size_t>(width) == 0 ? "\n" : "";
        }
        std::string text;
        appendLayerText(text, gids, LayerFormat::csv, width);
        EXPECT_EQ(text, expected) << width;
        EXPECT_EQ(csvGids(text), gids);
    }
}

// pugixml's own indented save of what writeSame builds with XmlWriter.
TEST(XmlWriterTest, WritesWhatPugixmlWouldForAnyCharacter) {
    std::string odd;
    for (int c = 1; c < 128; ++c) {
        odd += static_cast<char>(c);
    }
    odd += "\xC3\xA9";
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node root = document.append_child("map");
    root.append_attribute("name") = odd.c_str();
    root.append_attribute("count") = -12;
    root.append_child("empty");
    pugi::xml_node outer = root.append_child("outer");
    outer.append_child("inner").append_attribute("a") = "b";
    outer.append_child("text").append_child(pugi::node_pcdata).set_value(odd.c_str());
    struct Collect : pugi::xml_writer {
        void write(const void* data, std::size_t size) override {
            text.append(static_cast<const char*>(data), size);
        }
        std::string text;
    } theirs;
    document.save(theirs, " ", pugi::format_indent, pugi::encoding_utf8);

    XmlWriter xml(0);
    xml.open("map");
    xml.attribute("name", odd);
    xml.attribute("count", -12);
    xml.open("empty");
    xml.close();
    xml.open("outer");
    xml.open("inner");
    xml.attribute("a", "b");
    xml.close();
    xml.open("text");
    xml.text(odd);
    xml.close();
    xml.close();
    xml.close();
    EXPECT_EQ(xml.take(), theirs.text);
}

TiledTileSet someTileSet(const std::string& source) {
    TiledTileSet tileSet;
    tileSet.name = source;
    tileSet.tileCount = 10;
    return tileSet;
}

// A map of one row of two cells whose layer data is given.
std::string tmxWithData(const std::string& data, const std::string& before = "") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + before +
           "<map width=\"2\" height=\"1\" tilewidth=\"16\" tileheight=\"16\">\n"
           " <layer id=\"1\" name=\"L\" width=\"2\" height=\"1\">\n  " +
           data + "\n </layer>\n</map>\n";
}

std::vector<std::uint32_t> tmxGids(const std::string& text) {
    const TiledMap map = readTmx(text, someTileSet);
    return map.layers.empty() ? std::vector<std::uint32_t>{99} : map.layers.front().gids;
}

TEST(TmxCsvData, IsReadWhereverTheXmlPutsIt) {
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\">\n1,2\n</data>")), ElementsAre(1, 2));
    EXPECT_THAT(tmxGids(tmxWithData("<data  encoding = 'csv' >3,4</data >")), ElementsAre(3, 4));
    // What the XML parser makes of the text, rather than the text itself.
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\">1,&#50;</data>")), ElementsAre(1, 2));
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\"><![CDATA[5,6]]></data>")),
                ElementsAre(5, 6));
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\">7,<!-- 0,0 -->8</data>")),
                ElementsAre(7));
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\">1,2</data>",
                                    "<!-- <data encoding=\"csv\">9,9</data> -->\n")),
                ElementsAre(1, 2));
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\">1,2</data>",
                                    "<!DOCTYPE map [<!ENTITY x \"y\">]>\n")),
                ElementsAre(1, 2));
    // A byte that could pass for the reader's own mark, in the file itself.
    EXPECT_THAT(tmxGids(tmxWithData("<data encoding=\"csv\">3,4</data><x a=\"\x01"
                                    "0\"/>")),
                ElementsAre(3, 4));
    std::string latin = tmxWithData("<data encoding=\"csv\">1,2</data><x a=\"\xE9\"/>");
    latin.replace(latin.find("UTF-8"), 5, "ISO-8859-1");
    EXPECT_THAT(tmxGids(latin), ElementsAre(1, 2));
}

TEST(TmxCsvData, RefusalsAreThoseOfTheWholeText) {
    const auto refusal = [](const std::string& text) {
        try {
            readTmx(text, someTileSet);
        } catch (const std::runtime_error& error) {
            return std::string(error.what());
        }
        return std::string("taken");
    };
    EXPECT_EQ(refusal(tmxWithData("<data encoding=\"csv\" compression=\"zlib\">1,2</data>")),
              "layer \"L\": CSV layer data cannot be compressed");
    // Another layer's data, taken ahead of the parser, is not this one's.
    EXPECT_THAT(refusal(tmxWithData("<data encoding=\"csv\">\x01"
                                    "0</data>\n </layer>\n"
                                    " <layer name=\"M\"><data encoding=\"csv\">1,2</data>")),
                HasSubstr("layer \"L\": the layer's CSV data holds \"\x01"
                          "0\""));
    EXPECT_EQ(
        refusal(tmxWithData("<data encoding=\"csv\">1,,2</data>")),
        "layer \"L\": the layer's CSV data holds \",2\" where a tile number belongs (cell 1)");
    // The byte named is the file's, not that of the text the parser saw.
    const std::string broken = tmxWithData("<data encoding=\"csv\">1,2</data>") + "<oops";
    pugi::xml_document document;
    const auto offset = document.load_buffer(broken.data(), broken.size()).offset;
    EXPECT_THAT(refusal(broken), HasSubstr("at byte " + std::to_string(offset)));
}

TEST(TmxProperties, AnyCharacterComesBackFromEitherFormat) {
    std::string odd = "a&b<c>d\"e'f\ng\th\\i/j\xC3\xA9";
    TiledMap map;
    map.width = 1;
    map.height = 1;
    map.properties = {{"text", "string", odd}, {"n", "int", "-7"}};
    map.layers = {{"L", {3}}};
    using Writer = std::string (*)(const TiledMap&, LayerFormat);
    using Reader = TiledMap (*)(std::string_view, const TileSetLoader&);
    for (const auto& [write, read] : {std::pair<Writer, Reader>{writeTmx, readTmx},
                                      std::pair<Writer, Reader>{writeTmj, readTmj}}) {
        const TiledMap back = read(write(map, LayerFormat::csv), someTileSet);
        ASSERT_EQ(back.properties.size(), 2u);
        EXPECT_EQ(back.properties[0].value, odd);
        EXPECT_EQ(back.properties[1].value, "-7");
        EXPECT_THAT(back.layers.at(0).gids, ElementsAre(3));
    }
}

} // namespace
} // namespace marvek::test
