// Tiled's XML forms: the map (TMX) and the tile set (TSX).
#include "maps/mapFiles.h"

#include "maps/csvLayerText.h"
#include "maps/xmlWriter.h"

#include <pugixml.hpp>

#include <stdexcept>

namespace marvek {
namespace {

constexpr std::string_view formatVersion = "1.8";

void writeProperties(XmlWriter& xml, const std::vector<TiledProperty>& properties) {
    if (properties.empty()) {
        return;
    }
    xml.open("properties");
    for (const TiledProperty& property : properties) {
        xml.open("property");
        xml.attribute("name", property.name);
        if (property.type != "string") {
            xml.attribute("type", property.type);
        }
        xml.attribute("value", property.value);
        xml.close();
    }
    xml.close();
}

void writeTileSetContents(XmlWriter& xml, const TiledTileSet& tileSet) {
    xml.attribute("name", tileSet.name);
    xml.attribute("tilewidth", tileSet.tileWidth);
    xml.attribute("tileheight", tileSet.tileHeight);
    xml.attribute("tilecount", tileSet.tileCount);
    xml.attribute("columns", tileSet.columns);
    writeProperties(xml, tileSet.properties);
    xml.open("image");
    xml.attribute("source", tileSet.image);
    xml.attribute("width", tileSet.imageWidth);
    xml.attribute("height", tileSet.imageHeight);
    xml.close();
    for (const auto& [id, properties] : tileSet.tileProperties) {
        xml.open("tile");
        xml.attribute("id", id);
        writeProperties(xml, properties);
        xml.close();
    }
}

void writeLayer(XmlWriter& xml, const TiledTileLayer& layer, std::int32_t id, const TiledMap& size,
                LayerFormat format) {
    xml.open("layer");
    xml.attribute("id", id);
    xml.attribute("name", layer.name);
    xml.attribute("width", size.width);
    xml.attribute("height", size.height);
    xml.open("data");
    if (format == LayerFormat::xml) {
        for (const std::uint32_t gid : layer.gids) {
            xml.open("tile");
            if (gid != 0) {
                xml.attribute("gid", gid);
            }
            xml.close();
        }
    } else {
        const LayerEncoding encoding = layerEncoding(format);
        xml.attribute("encoding", encoding.encoding);
        if (!encoding.compression.empty()) {
            xml.attribute("compression", encoding.compression);
        }
        appendLayerText(xml.plainText(), layer.gids, format, size.width);
    }
    xml.close();
    xml.close();
}

void openRoot(XmlWriter& xml, const char* rootName) {
    xml.open(rootName);
    xml.attribute("version", formatVersion);
    xml.attribute("tiledversion", tiledVersion);
}

// ---- reading ----

std::vector<TiledProperty> readProperties(pugi::xml_node parent) {
    std::vector<TiledProperty> properties;
    for (pugi::xml_node node : parent.child("properties").children("property")) {
        TiledProperty property;
        property.name = node.attribute("name").as_string();
        property.type = node.attribute("type").as_string("string");
        // A text of several lines is kept as the element's text.
        const pugi::xml_attribute value = node.attribute("value");
        property.value = value ? value.as_string() : node.text().as_string();
        properties.push_back(std::move(property));
    }
    return properties;
}

TiledTileSet readTileSetNode(pugi::xml_node node) {
    TiledTileSet tileSet;
    tileSet.name = node.attribute("name").as_string();
    tileSet.tileCount = node.attribute("tilecount").as_int();
    tileSet.columns = node.attribute("columns").as_int();
    tileSet.tileWidth = node.attribute("tilewidth").as_int();
    tileSet.tileHeight = node.attribute("tileheight").as_int();
    tileSet.properties = readProperties(node);
    const pugi::xml_node image = node.child("image");
    tileSet.image = image.attribute("source").as_string();
    tileSet.imageWidth = image.attribute("width").as_int();
    tileSet.imageHeight = image.attribute("height").as_int();
    return tileSet;
}

std::vector<std::uint32_t> readLayerData(pugi::xml_node data, const std::string& layerName,
                                         CsvLayerText& csv) {
    if (data.child("chunk")) {
        throw std::runtime_error("layer \"" + layerName +
                                 "\" is stored in chunks, as only an "
                                 "infinite map is");
    }
    const std::string encoding = data.attribute("encoding").as_string();
    if (encoding.empty()) {
        std::vector<std::uint32_t> gids;
        for (pugi::xml_node tile : data.children("tile")) {
            gids.push_back(tile.attribute("gid").as_uint());
        }
        return gids;
    }
    std::vector<std::uint32_t> gids;
    if (csv.take(data.text().get(), gids)) {
        return gids;
    }
    try {
        return decodeLayer(data.text().get(), encoding, data.attribute("compression").as_string());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("layer \"" + layerName + "\": " + error.what());
    }
}

// The root of the XML text; original is the file's text, whose parsing
// names what is wrong when the text (the file without its CSV data) fails.
pugi::xml_node parsedRoot(pugi::xml_document& document, std::string_view text,
                          std::string_view original, const char* rootName) {
    pugi::xml_parse_result result = document.load_buffer(text.data(), text.size());
    if (!result && text.data() != original.data()) {
        result = document.load_buffer(original.data(), original.size());
    }
    if (!result) {
        throw std::runtime_error(std::string("this is not an XML file: ") + result.description() +
                                 " at byte " + std::to_string(result.offset));
    }
    const pugi::xml_node root = document.child(rootName);
    if (!root) {
        throw std::runtime_error(std::string("the file holds no <") + rootName + "> element");
    }
    return root;
}

void readChildren(pugi::xml_node root, TiledMap& map, const TileSetLoader& loadTileSet,
                  CsvLayerText& csv) {
    for (pugi::xml_node node : root.children()) {
        const std::string_view kind = node.name();
        const std::string name = node.attribute("name").as_string();
        if (kind == "tileset") {
            TiledTileSetReference reference;
            reference.firstGid = node.attribute("firstgid").as_uint();
            reference.source = node.attribute("source").as_string();
            reference.tileSet =
                reference.source.empty() ? readTileSetNode(node) : loadTileSet(reference.source);
            map.tileSets.push_back(std::move(reference));
        } else if (kind == "layer") {
            map.layers.push_back({name, readLayerData(node.child("data"), name, csv)});
        } else if (kind == "objectgroup") {
            map.ignored.push_back("object layer \"" + name + "\"");
        } else if (kind == "imagelayer") {
            map.ignored.push_back("image layer \"" + name + "\"");
        } else if (kind == "group") {
            map.ignored.push_back("group layer \"" + name + "\"");
        }
    }
}

} // namespace

std::string writeTmx(const TiledMap& map, LayerFormat format) {
    XmlWriter xml(expectedTextLength(map, 6));
    openRoot(xml, "map");
    xml.attribute("orientation", "orthogonal");
    xml.attribute("renderorder", "right-down");
    xml.attribute("width", map.width);
    xml.attribute("height", map.height);
    xml.attribute("tilewidth", map.tileWidth);
    xml.attribute("tileheight", map.tileHeight);
    xml.attribute("infinite", map.infinite ? 1 : 0);
    xml.attribute("nextlayerid", static_cast<std::int64_t>(map.layers.size() + 1));
    xml.attribute("nextobjectid", 1);
    writeProperties(xml, map.properties);
    for (const TiledTileSetReference& reference : map.tileSets) {
        xml.open("tileset");
        xml.attribute("firstgid", reference.firstGid);
        if (reference.source.empty()) {
            writeTileSetContents(xml, reference.tileSet);
        } else {
            xml.attribute("source", reference.source);
        }
        xml.close();
    }
    std::int32_t id = 1;
    for (const TiledTileLayer& layer : map.layers) {
        writeLayer(xml, layer, id++, map, format);
    }
    xml.close();
    return xml.take();
}

std::string writeTsx(const TiledTileSet& tileSet) {
    XmlWriter xml(4096);
    openRoot(xml, "tileset");
    writeTileSetContents(xml, tileSet);
    xml.close();
    return xml.take();
}

TiledMap readTmx(std::string_view text, const TileSetLoader& loadTileSet) {
    CsvLayerText csv(text);
    pugi::xml_document document;
    const pugi::xml_node root = parsedRoot(document, csv.xml(), text, "map");
    TiledMap map;
    map.width = root.attribute("width").as_int();
    map.height = root.attribute("height").as_int();
    map.tileWidth = root.attribute("tilewidth").as_int();
    map.tileHeight = root.attribute("tileheight").as_int();
    map.infinite = root.attribute("infinite").as_int() != 0;
    map.properties = readProperties(root);
    if (!map.infinite) {
        readChildren(root, map, loadTileSet, csv);
    }
    return map;
}

TiledTileSet readTsx(std::string_view text) {
    pugi::xml_document document;
    return readTileSetNode(parsedRoot(document, text, text, "tileset"));
}

} // namespace marvek
