#include "ui/systemClipboard.h"

#include "data/cellClipboard.h"
#include "data/clsLevel.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <exception>
#include <memory>
#include <span>

namespace marvek {

void putCellsOnClipboard(const CellBlock& block) {
    const std::vector<std::uint8_t> bytes = encodeCells(block);
    auto data = std::make_unique<QMimeData>();
    data->setData(cellsMimeType, QByteArray(reinterpret_cast<const char*>(bytes.data()),
                                            static_cast<qsizetype>(bytes.size())));
    data->setText(QString::fromStdString(cellsAsText(block)));
    // The clipboard takes ownership of the data.
    QGuiApplication::clipboard()->setMimeData(data.release());
}

ClipboardCells cellsFromClipboard(std::int32_t tileCount) {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr) {
        throw CellClipboardError("the clipboard is empty");
    }
    if (data->hasFormat(cellsMimeType)) {
        const QByteArray bytes = data->data(cellsMimeType);
        return {decodeCells(std::span(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                      static_cast<std::size_t>(bytes.size()))),
                true};
    }
    if (data->hasText()) {
        return {cellsFromText(data->text().toStdString(), tileCount), false};
    }
    throw CellClipboardError("the clipboard holds neither cells nor text");
}

void enableWhileClipboardHoldsCells(QAction& action) {
    const auto follow = [&action] {
        bool pasteable = true;
        try {
            // Whether the tiles suit the open level is Paste's to say.
            cellsFromClipboard(clsLevel::largestFileTile + 1);
        } catch (const std::exception&) {
            pasteable = false;
        }
        action.setEnabled(pasteable);
    };
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &action, follow);
    follow();
}

} // namespace marvek
