#include "maps/csvLayerText.h"

#include "maps/layerData.h"

#include <algorithm>
#include <charconv>

namespace marvek {
namespace {

// Never in a map that Tiled writes; a file that holds one is left whole.
constexpr char markByte = '\x01';

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isNameEnd(char c) {
    return isSpace(c) || c == '/' || c == '>';
}

std::size_t skipSpaces(std::string_view text, std::size_t at) {
    while (at < text.size() && isSpace(text[at])) {
        ++at;
    }
    return at;
}

// True when a start tag's attributes are plain name="value" pairs that say
// encoding="csv" and no compression, which is data this reader takes.
bool saysPlainCsv(std::string_view attributes) {
    bool csv = false;
    bool seenEncoding = false;
    std::size_t at = skipSpaces(attributes, 0);
    while (at < attributes.size() && attributes[at] != '/') {
        const std::size_t nameStart = at;
        while (at < attributes.size() && !isSpace(attributes[at]) && attributes[at] != '=') {
            ++at;
        }
        const std::string_view name = attributes.substr(nameStart, at - nameStart);
        at = skipSpaces(attributes, at);
        if (at >= attributes.size() || attributes[at] != '=') {
            return false;
        }
        at = skipSpaces(attributes, at + 1);
        if (at >= attributes.size() || (attributes[at] != '"' && attributes[at] != '\'')) {
            return false;
        }
        const std::size_t close = attributes.find(attributes[at], at + 1);
        if (close == std::string_view::npos) {
            return false;
        }
        const std::string_view value = attributes.substr(at + 1, close - at - 1);
        if (name == "compression") {
            return false;
        }
        if (name == "encoding" && !seenEncoding) {
            // The parser, like Tiled, goes by the first of the same name.
            seenEncoding = true;
            csv = value == "csv";
        }
        at = skipSpaces(attributes, close + 1);
    }
    return csv;
}

} // namespace

CsvLayerText::CsvLayerText(std::string_view map) : map_(map) {
    scan();
    // A mark byte the file held itself could pass for one of ours; the
    // parser sees only what was not taken, so that is where to look.
    if (!taken_.empty() &&
        static_cast<std::size_t>(std::ranges::count(xml_, markByte)) != taken_.size()) {
        taken_.clear();
        xml_.clear();
    }
}

void CsvLayerText::scan() {
    constexpr std::string_view comment = "<!--";
    constexpr std::string_view cdata = "<![CDATA[";
    std::size_t at = 0;
    while ((at = map_.find('<', at)) != std::string_view::npos) {
        const std::string_view rest = map_.substr(at);
        std::size_t next = std::string_view::npos;
        if (rest.starts_with(comment)) {
            next = map_.find("-->", at + comment.size());
            next += next != std::string_view::npos ? 3 : 0;
        } else if (rest.starts_with(cdata)) {
            next = map_.find("]]>", at + cdata.size());
            next += next != std::string_view::npos ? 3 : 0;
        } else if (rest.starts_with("<?")) {
            next = map_.find("?>", at + 2);
            next += next != std::string_view::npos ? 2 : 0;
        } else if (rest.starts_with("</")) {
            next = map_.find('>', at);
            next += next != std::string_view::npos ? 1 : 0;
        } else if (!rest.starts_with("<!") && rest.size() > 1 && !isNameEnd(rest[1])) {
            // A DOCTYPE may declare what the parser then puts in; so may
            // nothing else.
            const std::size_t end = tagEnd(at);
            next = end == std::string_view::npos ? end : takeData(at, end);
        }
        if (next == std::string_view::npos) {
            taken_.clear();
            xml_.clear();
            return;
        }
        at = next;
    }
    if (!taken_.empty()) {
        xml_.append(map_, copied_);
    }
}

std::size_t CsvLayerText::tagEnd(std::size_t at) const {
    while ((at = map_.find_first_of("\"'>", at + 1)) != std::string_view::npos) {
        if (map_[at] == '>') {
            return at;
        }
        at = map_.find(map_[at], at + 1);
        if (at == std::string_view::npos) {
            break;
        }
    }
    return std::string_view::npos;
}

std::size_t CsvLayerText::takeData(std::size_t tagStart, std::size_t end) {
    constexpr std::string_view name = "data";
    constexpr std::string_view endTag = "</data";
    const std::size_t afterName = tagStart + 1 + name.size();
    if (map_.substr(tagStart + 1, name.size()) != name || !isNameEnd(map_[afterName]) ||
        map_[end - 1] == '/' || !saysPlainCsv(map_.substr(afterName, end - afterName))) {
        return end + 1;
    }
    std::optional<CsvPrefix> read = readCsvPrefix(map_.substr(end + 1));
    if (!read) {
        return end + 1;
    }
    const std::size_t stop = end + 1 + read->length;
    const std::string_view rest = map_.substr(stop);
    if (!rest.starts_with(endTag) || rest.size() == endTag.size() ||
        (rest[endTag.size()] != '>' && !isSpace(rest[endTag.size()]))) {
        return end + 1;
    }
    xml_.append(map_, copied_, end + 1 - copied_);
    xml_ += markByte;
    xml_ += std::to_string(taken_.size());
    copied_ = stop;
    taken_.push_back(std::move(read->gids));
    return stop;
}

bool CsvLayerText::take(std::string_view text, std::vector<std::uint32_t>& gids) {
    if (text.empty() || text[0] != markByte) {
        return false;
    }
    std::size_t index = 0;
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data() + 1, end, index);
    if (error != std::errc() || next != end || index >= taken_.size()) {
        return false;
    }
    gids = std::move(taken_[index]);
    return true;
}

} // namespace marvek
