// Tiled's JSON forms: the map (TMJ) and the tile set (TSJ).
#include "maps/mapFiles.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <span>
#include <stdexcept>

namespace marvek {
namespace {

using nlohmann::json;

constexpr std::string_view formatVersion = "1.8";

// Writes compact JSON into one string, as nlohmann's dump() writes it,
// without building a document first.
class JsonWriter {
public:
    explicit JsonWriter(std::size_t reserve) { out_.reserve(reserve); }

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    // A member's name; its value follows.
    void key(std::string_view name) {
        value(name);
        out_ += ':';
        afterKey_ = true;
    }
    void value(std::string_view text) {
        separate();
        // nlohmann's escaping, which also refuses text that is not UTF-8.
        out_ += json(text).dump();
    }
    void value(const char* text) { value(std::string_view(text)); }
    void value(std::int64_t number) {
        separate();
        std::array<char, 24> digits{};
        out_.append(digits.data(),
                    std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
    }
    void value(bool truth) {
        separate();
        out_ += truth ? "true" : "false";
    }
    // A member whose value is an array of numbers.
    void numbers(std::string_view name, std::span<const std::uint32_t> gids) {
        key(name);
        separate();
        out_ += '[';
        appendNumberList(out_, gids, 0);
        out_ += ']';
    }

    std::string take() { return std::move(out_); }

private:
    void separate() {
        if (afterKey_) {
            afterKey_ = false;
        } else if (!first_.empty()) {
            if (!first_.back()) {
                out_ += ',';
            }
            first_.back() = false;
        }
    }
    void begin(char bracket) {
        separate();
        out_ += bracket;
        first_.push_back(true);
    }
    void end(char bracket) {
        first_.pop_back();
        out_ += bracket;
    }

    std::string out_;
    std::vector<bool> first_;
    bool afterKey_ = false;
};

template <typename T> void member(JsonWriter& out, std::string_view name, const T& value) {
    out.key(name);
    out.value(value);
}

void writeProperties(JsonWriter& out, const std::vector<TiledProperty>& properties) {
    out.key("properties");
    out.beginArray();
    for (const TiledProperty& property : properties) {
        out.beginObject();
        member(out, "name", property.name);
        member(out, "type", property.type);
        out.key("value");
        if (property.type == "int") {
            out.value(std::int64_t{std::stoll(property.value)});
        } else {
            out.value(property.value);
        }
        out.endObject();
    }
    out.endArray();
}

void writeTileSetContents(JsonWriter& out, const TiledTileSet& tileSet) {
    member(out, "columns", std::int64_t{tileSet.columns});
    member(out, "image", tileSet.image);
    member(out, "imageheight", std::int64_t{tileSet.imageHeight});
    member(out, "imagewidth", std::int64_t{tileSet.imageWidth});
    member(out, "margin", std::int64_t{0});
    member(out, "name", tileSet.name);
    if (!tileSet.properties.empty()) {
        writeProperties(out, tileSet.properties);
    }
    member(out, "spacing", std::int64_t{0});
    member(out, "tilecount", std::int64_t{tileSet.tileCount});
    member(out, "tileheight", std::int64_t{tileSet.tileHeight});
    member(out, "tilewidth", std::int64_t{tileSet.tileWidth});
}

void writeLayer(JsonWriter& out, const TiledTileLayer& layer, std::int32_t id, const TiledMap& map,
                LayerFormat format) {
    out.beginObject();
    if (format == LayerFormat::csv || format == LayerFormat::xml) {
        out.numbers("data", layer.gids);
    } else {
        const LayerEncoding encoding = layerEncoding(format);
        if (!encoding.compression.empty()) {
            member(out, "compression", encoding.compression);
        }
        std::string text;
        appendLayerText(text, layer.gids, format, map.width);
        member(out, "data", text);
        member(out, "encoding", encoding.encoding);
    }
    member(out, "height", std::int64_t{map.height});
    member(out, "id", std::int64_t{id});
    member(out, "name", layer.name);
    member(out, "opacity", std::int64_t{1});
    member(out, "type", "tilelayer");
    member(out, "visible", true);
    member(out, "width", std::int64_t{map.width});
    member(out, "x", std::int64_t{0});
    member(out, "y", std::int64_t{0});
    out.endObject();
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
    JsonWriter out(expectedTextLength(map, 5));
    out.beginObject();
    member(out, "compressionlevel", std::int64_t{-1});
    member(out, "height", std::int64_t{map.height});
    member(out, "infinite", map.infinite);
    out.key("layers");
    out.beginArray();
    std::int32_t id = 1;
    for (const TiledTileLayer& layer : map.layers) {
        writeLayer(out, layer, id++, map, format);
    }
    out.endArray();
    member(out, "nextlayerid", std::int64_t{id});
    member(out, "nextobjectid", std::int64_t{1});
    member(out, "orientation", "orthogonal");
    if (!map.properties.empty()) {
        writeProperties(out, map.properties);
    }
    member(out, "renderorder", "right-down");
    member(out, "tiledversion", tiledVersion);
    member(out, "tileheight", std::int64_t{map.tileHeight});
    out.key("tilesets");
    out.beginArray();
    for (const TiledTileSetReference& reference : map.tileSets) {
        out.beginObject();
        member(out, "firstgid", std::int64_t{reference.firstGid});
        if (reference.source.empty()) {
            writeTileSetContents(out, reference.tileSet);
        } else {
            member(out, "source", reference.source);
        }
        out.endObject();
    }
    out.endArray();
    member(out, "tilewidth", std::int64_t{map.tileWidth});
    member(out, "type", "map");
    member(out, "version", formatVersion);
    member(out, "width", std::int64_t{map.width});
    out.endObject();
    // On one line: indented, every cell of a layer would take a line.
    return out.take() + "\n";
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
