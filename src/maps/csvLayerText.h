#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// A TMX map's CSV layer data, read before the XML parser sees the file.
// That data is the bulk of a map, and the parser would only scan it for
// the numbers to be read once more; so each <data encoding="csv"> whose
// whole text is CSV gives its text up for a short mark, and its gids are
// kept here. Anything unusual (a DOCTYPE, data that is not plain CSV) is
// left to the parser and the usual reading, which also says what is wrong.
class CsvLayerText {
public:
    explicit CsvLayerText(std::string_view map);

    // The text for the XML parser.
    std::string_view xml() const { return taken_.empty() ? map_ : std::string_view(xml_); }

    // Takes the gids a data element's text stands for, when it is a mark.
    bool take(std::string_view text, std::vector<std::uint32_t>& gids);

private:
    void scan();
    // Where the tag starting at "<" ends ('>'), or npos.
    std::size_t tagEnd(std::size_t at) const;
    // Takes the text of the element whose start tag spans tagStart..end
    // when it is CSV data and all the element holds; returns where to go on.
    std::size_t takeData(std::size_t tagStart, std::size_t end);

    std::string_view map_;
    std::string xml_;
    std::size_t copied_ = 0;
    std::vector<std::vector<std::uint32_t>> taken_;
};

} // namespace marvek
