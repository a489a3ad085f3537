#pragma once

// Scripted stand-ins for the message boxes and common dialogs: they record
// what the program showed and answer from a queue.

#include "app/clsCommonDialog.h"
#include "app/clsMessageBox.h"
#include "app/clsScreenCursor.h"

#include <QString>
#include <QStringList>

#include <deque>
#include <optional>
#include <vector>

namespace marvek::test {

struct ShownMessage {
    QString text;
    int style = 0;
};

class ScriptedMessageBox final : public clsMessageBox {
public:
    // Answers in order; OK (or Cancel for a question) when the queue is empty.
    std::deque<int> answers;
    std::vector<ShownMessage> shown;
    std::vector<QString> fatal;

    int show(QWidget* /*owner*/, const QString& text, int style) override {
        shown.push_back({text, style});
        if (answers.empty()) {
            return (style & 7) == 0 ? messageAnswer::ok : messageAnswer::cancel;
        }
        const int answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void showFatal(QWidget* /*owner*/, const QString& text) override { fatal.push_back(text); }
};

class ScriptedCommonDialog final : public clsCommonDialog {
public:
    // Each file dialog takes the next answer; an empty list is a cancel.
    std::deque<QStringList> fileAnswers;
    std::deque<QString> folderAnswers;
    std::deque<std::optional<std::uint32_t>> colourAnswers;
    std::vector<FileRequest> fileRequests;
    std::vector<QString> folderPrompts;

protected:
    QStringList askOpen(QWidget* /*owner*/, const FileRequest& request) override {
        return next(request);
    }
    QString askSave(QWidget* /*owner*/, const FileRequest& request) override {
        const QStringList chosen = next(request);
        return chosen.isEmpty() ? QString() : chosen.front();
    }
    QString askFolder(QWidget* /*owner*/, const QString& prompt,
                      const QString& /*start*/) override {
        folderPrompts.push_back(prompt);
        if (folderAnswers.empty()) {
            return {};
        }
        QString answer = folderAnswers.front();
        folderAnswers.pop_front();
        return answer;
    }
    std::optional<std::uint32_t> askColour(QWidget* /*owner*/, std::uint32_t /*initial*/) override {
        if (colourAnswers.empty()) {
            return std::nullopt;
        }
        auto answer = colourAnswers.front();
        colourAnswers.pop_front();
        return answer;
    }

private:
    QStringList next(const FileRequest& request) {
        fileRequests.push_back(request);
        if (fileAnswers.empty()) {
            return {};
        }
        QStringList answer = fileAnswers.front();
        fileAnswers.pop_front();
        return answer;
    }
};

// A screen pointer that stays where it is put.
class ScriptedScreenCursor final : public clsScreenCursor {
public:
    QPoint position;
    std::vector<QPoint> placed;

    QPoint pos() const override { return position; }
    void setPos(const QPoint& to) override {
        position = to;
        placed.push_back(to);
    }
};

} // namespace marvek::test
