// Tiled's XML forms: the map (TMX) and the tile set (TSX).
#include "maps/mapFiles.h"

#include <pugixml.hpp>

#include <stdexcept>

namespace marvek {
namespace {

constexpr std::string_view formatVersion = "1.8";

void appendProperties(pugi::xml_node parent, const std::vector<TiledProperty>& properties) {
    if (properties.empty()) {
        return;
    }
    pugi::xml_node list = parent.append_child("properties");
    for (const TiledProperty& property : properties) {
        pugi::xml_node node = list.append_child("property");
        node.append_attribute("name") = property.name.c_str();
        if (property.type != "string") {
            node.append_attribute("type") = property.type.c_str();
        }
        node.append_attribute("value") = property.value.c_str();
    }
}

void appendTileSet(pugi::xml_node node, const TiledTileSet& tileSet) {
    node.append_attribute("name") = tileSet.name.c_str();
    node.append_attribute("tilewidth") = tileSet.tileWidth;
    node.append_attribute("tileheight") = tileSet.tileHeight;
    node.append_attribute("tilecount") = tileSet.tileCount;
    node.append_attribute("columns") = tileSet.columns;
    appendProperties(node, tileSet.properties);
    pugi::xml_node image = node.append_child("image");
    image.append_attribute("source") = tileSet.image.c_str();
    image.append_attribute("width") = tileSet.imageWidth;
    image.append_attribute("height") = tileSet.imageHeight;
    for (const auto& [id, properties] : tileSet.tileProperties) {
        pugi::xml_node tile = node.append_child("tile");
        tile.append_attribute("id") = id;
        appendProperties(tile, properties);
    }
}

void appendLayer(pugi::xml_node map, const TiledTileLayer& layer, std::int32_t id,
                 const TiledMap& size, LayerFormat format) {
    pugi::xml_node node = map.append_child("layer");
    node.append_attribute("id") = id;
    node.append_attribute("name") = layer.name.c_str();
    node.append_attribute("width") = size.width;
    node.append_attribute("height") = size.height;
    pugi::xml_node data = node.append_child("data");
    if (format == LayerFormat::xml) {
        for (const std::uint32_t gid : layer.gids) {
            pugi::xml_node tile = data.append_child("tile");
            if (gid != 0) {
                tile.append_attribute("gid") = gid;
            }
        }
        return;
    }
    const EncodedLayer encoded = encodeLayer(layer.gids, format, size.width);
    data.append_attribute("encoding") = encoded.encoding.empty() ? "csv" : encoded.encoding.c_str();
    if (!encoded.compression.empty()) {
        data.append_attribute("compression") = encoded.compression.c_str();
    }
    data.append_child(pugi::node_pcdata).set_value(encoded.text.c_str());
}

// Collects what pugixml saves, without a stream between.
class TextWriter : public pugi::xml_writer {
public:
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
    std::string text;
};

std::string saved(const pugi::xml_document& document) {
    TextWriter writer;
    document.save(writer, " ", pugi::format_indent, pugi::encoding_utf8);
    return std::move(writer.text);
}

pugi::xml_node declaredDocument(pugi::xml_document& document, const char* rootName) {
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node root = document.append_child(rootName);
    root.append_attribute("version") = std::string(formatVersion).c_str();
    root.append_attribute("tiledversion") = std::string(tiledVersion).c_str();
    return root;
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

std::vector<std::uint32_t> readLayerData(pugi::xml_node data, const std::string& layerName) {
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
    try {
        return decodeLayer(data.text().get(), encoding, data.attribute("compression").as_string());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("layer \"" + layerName + "\": " + error.what());
    }
}

pugi::xml_node parsedRoot(pugi::xml_document& document, std::string_view text,
                          const char* rootName) {
    const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size());
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

void readChildren(pugi::xml_node root, TiledMap& map, const TileSetLoader& loadTileSet) {
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
            map.layers.push_back({name, readLayerData(node.child("data"), name)});
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
    pugi::xml_document document;
    pugi::xml_node root = declaredDocument(document, "map");
    root.append_attribute("orientation") = "orthogonal";
    root.append_attribute("renderorder") = "right-down";
    root.append_attribute("width") = map.width;
    root.append_attribute("height") = map.height;
    root.append_attribute("tilewidth") = map.tileWidth;
    root.append_attribute("tileheight") = map.tileHeight;
    root.append_attribute("infinite") = map.infinite ? 1 : 0;
    root.append_attribute("nextlayerid") = static_cast<int>(map.layers.size() + 1);
    root.append_attribute("nextobjectid") = 1;
    appendProperties(root, map.properties);
    for (const TiledTileSetReference& reference : map.tileSets) {
        pugi::xml_node node = root.append_child("tileset");
        node.append_attribute("firstgid") = reference.firstGid;
        if (reference.source.empty()) {
            appendTileSet(node, reference.tileSet);
        } else {
            node.append_attribute("source") = reference.source.c_str();
        }
    }
    std::int32_t id = 1;
    for (const TiledTileLayer& layer : map.layers) {
        appendLayer(root, layer, id++, map, format);
    }
    return saved(document);
}

std::string writeTsx(const TiledTileSet& tileSet) {
    pugi::xml_document document;
    appendTileSet(declaredDocument(document, "tileset"), tileSet);
    return saved(document);
}

TiledMap readTmx(std::string_view text, const TileSetLoader& loadTileSet) {
    pugi::xml_document document;
    const pugi::xml_node root = parsedRoot(document, text, "map");
    TiledMap map;
    map.width = root.attribute("width").as_int();
    map.height = root.attribute("height").as_int();
    map.tileWidth = root.attribute("tilewidth").as_int();
    map.tileHeight = root.attribute("tileheight").as_int();
    map.infinite = root.attribute("infinite").as_int() != 0;
    map.properties = readProperties(root);
    if (!map.infinite) {
        readChildren(root, map, loadTileSet);
    }
    return map;
}

TiledTileSet readTsx(std::string_view text) {
    pugi::xml_document document;
    return readTileSetNode(parsedRoot(document, text, "tileset"));
}

} // namespace marvek
