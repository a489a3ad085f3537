// Tiled's JSON forms: the map (TMJ) and the tile set (TSJ).
#include "maps/mapFiles.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace marvek {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr std::string_view formatVersion = "1.8";

ordered_json propertiesJson(const std::vector<TiledProperty>& properties) {
    ordered_json list = ordered_json::array();
    for (const TiledProperty& property : properties) {
        ordered_json entry;
        entry["name"] = property.name;
        entry["type"] = property.type;
        if (property.type == "int") {
            entry["value"] = std::stoll(property.value);
        } else {
            entry["value"] = property.value;
        }
        list.push_back(std::move(entry));
    }
    return list;
}

void putTileSet(ordered_json& entry, const TiledTileSet& tileSet) {
    entry["columns"] = tileSet.columns;
    entry["image"] = tileSet.image;
    entry["imageheight"] = tileSet.imageHeight;
    entry["imagewidth"] = tileSet.imageWidth;
    entry["margin"] = 0;
    entry["name"] = tileSet.name;
    if (!tileSet.properties.empty()) {
        entry["properties"] = propertiesJson(tileSet.properties);
    }
    entry["spacing"] = 0;
    entry["tilecount"] = tileSet.tileCount;
    entry["tileheight"] = tileSet.tileHeight;
    entry["tilewidth"] = tileSet.tileWidth;
}

ordered_json layerJson(const TiledTileLayer& layer, std::int32_t id, const TiledMap& map,
                       LayerFormat format) {
    ordered_json entry;
    if (format == LayerFormat::csv || format == LayerFormat::xml) {
        entry["data"] = layer.gids;
    } else {
        EncodedLayer encoded = encodeLayer(layer.gids, format, map.width);
        if (!encoded.compression.empty()) {
            entry["compression"] = encoded.compression;
        }
        entry["data"] = std::move(encoded.text);
        entry["encoding"] = "base64";
    }
    entry["height"] = map.height;
    entry["id"] = id;
    entry["name"] = layer.name;
    entry["opacity"] = 1;
    entry["type"] = "tilelayer";
    entry["visible"] = true;
    entry["width"] = map.width;
    entry["x"] = 0;
    entry["y"] = 0;
    return entry;
}

// ---- reading ----

// A member's value, or the fallback when the member is missing or of
// another type.
template <typename T> T member(const json& object, const char* name, T fallback) {
    const auto found = object.find(name);
    if (found == object.end()) {
        return fallback;
    }
    if constexpr (std::is_same_v<T, std::string>) {
        return found->is_string() ? found->get<std::string>() : fallback;
    } else if constexpr (std::is_same_v<T, bool>) {
        return found->is_boolean() ? found->get<bool>() : fallback;
    } else {
        return found->is_number_integer() ? found->get<T>() : fallback;
    }
}

const json& arrayMember(const json& object, const char* name) {
    static const json empty = json::array();
    const auto found = object.find(name);
    return found != object.end() && found->is_array() ? *found : empty;
}

std::vector<TiledProperty> readProperties(const json& object) {
    std::vector<TiledProperty> properties;
    for (const json& entry : arrayMember(object, "properties")) {
        if (!entry.is_object()) {
            continue;
        }
        TiledProperty property;
        property.name = member<std::string>(entry, "name", "");
        property.type = member<std::string>(entry, "type", "string");
        const auto value = entry.find("value");
        if (value != entry.end()) {
            property.value = value->is_string() ? value->get<std::string>() : value->dump();
        }
        properties.push_back(std::move(property));
    }
    return properties;
}

TiledTileSet readTileSetObject(const json& object) {
    TiledTileSet tileSet;
    tileSet.name = member<std::string>(object, "name", "");
    tileSet.tileCount = member<std::int32_t>(object, "tilecount", 0);
    tileSet.columns = member<std::int32_t>(object, "columns", 0);
    tileSet.tileWidth = member<std::int32_t>(object, "tilewidth", 0);
    tileSet.tileHeight = member<std::int32_t>(object, "tileheight", 0);
    tileSet.image = member<std::string>(object, "image", "");
    tileSet.imageWidth = member<std::int32_t>(object, "imagewidth", 0);
    tileSet.imageHeight = member<std::int32_t>(object, "imageheight", 0);
    tileSet.properties = readProperties(object);
    return tileSet;
}

std::vector<std::uint32_t> readLayerData(const json& layer, const std::string& name) {
    if (layer.contains("chunks")) {
        throw std::runtime_error("layer \"" + name +
                                 "\" is stored in chunks, as only an infinite map is");
    }
    const auto data = layer.find("data");
    if (data == layer.end()) {
        throw std::runtime_error("layer \"" + name + "\" has no data");
    }
    if (data->is_string()) {
        try {
            return decodeLayer(data->get<std::string>(),
                               member<std::string>(layer, "encoding", "base64"),
                               member<std::string>(layer, "compression", ""));
        } catch (const std::runtime_error& error) {
            throw std::runtime_error("layer \"" + name + "\": " + error.what());
        }
    }
    std::vector<std::uint32_t> gids;
    gids.reserve(data->is_array() ? data->size() : 0);
    for (const json& gid : arrayMember(layer, "data")) {
        if (!gid.is_number_unsigned() && !gid.is_number_integer()) {
            throw std::runtime_error("layer \"" + name + "\" holds " + gid.dump() +
                                     " where a tile number belongs (cell " +
                                     std::to_string(gids.size()) + ")");
        }
        gids.push_back(gid.get<std::uint32_t>());
    }
    return gids;
}

json parsedObject(std::string_view text) {
    json document = json::parse(text, nullptr, false);
    if (document.is_discarded() || !document.is_object()) {
        throw std::runtime_error("this is not a JSON object as Tiled writes one");
    }
    return document;
}

void readLayers(const json& document, TiledMap& map) {
    for (const json& layer : arrayMember(document, "layers")) {
        if (!layer.is_object()) {
            continue;
        }
        const std::string type = member<std::string>(layer, "type", "");
        const std::string name = member<std::string>(layer, "name", "");
        if (type == "tilelayer") {
            map.layers.push_back({name, readLayerData(layer, name)});
        } else if (type == "objectgroup") {
            map.ignored.push_back("object layer \"" + name + "\"");
        } else if (type == "imagelayer") {
            map.ignored.push_back("image layer \"" + name + "\"");
        } else if (type == "group") {
            map.ignored.push_back("group layer \"" + name + "\"");
        }
    }
}

} // namespace

std::string writeTmj(const TiledMap& map, LayerFormat format) {
    ordered_json document;
    document["compressionlevel"] = -1;
    document["height"] = map.height;
    document["infinite"] = map.infinite;
    ordered_json layers = ordered_json::array();
    std::int32_t id = 1;
    for (const TiledTileLayer& layer : map.layers) {
        layers.push_back(layerJson(layer, id++, map, format));
    }
    document["layers"] = std::move(layers);
    document["nextlayerid"] = id;
    document["nextobjectid"] = 1;
    document["orientation"] = "orthogonal";
    if (!map.properties.empty()) {
        document["properties"] = propertiesJson(map.properties);
    }
    document["renderorder"] = "right-down";
    document["tiledversion"] = tiledVersion;
    document["tileheight"] = map.tileHeight;
    ordered_json tileSets = ordered_json::array();
    for (const TiledTileSetReference& reference : map.tileSets) {
        ordered_json entry;
        entry["firstgid"] = reference.firstGid;
        if (reference.source.empty()) {
            putTileSet(entry, reference.tileSet);
        } else {
            entry["source"] = reference.source;
        }
        tileSets.push_back(std::move(entry));
    }
    document["tilesets"] = std::move(tileSets);
    document["tilewidth"] = map.tileWidth;
    document["type"] = "map";
    document["version"] = formatVersion;
    document["width"] = map.width;
    // On one line: indented, every cell of a layer would take a line.
    return document.dump() + "\n";
}

TiledMap readTmj(std::string_view text, const TileSetLoader& loadTileSet) {
    const json document = parsedObject(text);
    TiledMap map;
    map.width = member<std::int32_t>(document, "width", 0);
    map.height = member<std::int32_t>(document, "height", 0);
    map.tileWidth = member<std::int32_t>(document, "tilewidth", 0);
    map.tileHeight = member<std::int32_t>(document, "tileheight", 0);
    map.infinite = member<bool>(document, "infinite", false);
    map.properties = readProperties(document);
    if (map.infinite) {
        return map;
    }
    for (const json& entry : arrayMember(document, "tilesets")) {
        if (!entry.is_object()) {
            continue;
        }
        TiledTileSetReference reference;
        reference.firstGid = member<std::uint32_t>(entry, "firstgid", 0);
        reference.source = member<std::string>(entry, "source", "");
        reference.tileSet =
            reference.source.empty() ? readTileSetObject(entry) : loadTileSet(reference.source);
        map.tileSets.push_back(std::move(reference));
    }
    readLayers(document, map);
    return map;
}

TiledTileSet readTsj(std::string_view text) {
    return readTileSetObject(parsedObject(text));
}

} // namespace marvek
