#pragma once

#include <QString>

class QWidget;

namespace marvek {

inline constexpr const char* applicationTitle = "Marvek";

// Message box styles: buttons plus icon, as the windows ask for them.
namespace messageStyle {
inline constexpr int yesNoCancelQuestion = 35;
inline constexpr int yesNoQuestion = 36;
inline constexpr int exclamation = 48;
inline constexpr int information = 64;
} // namespace messageStyle

// What the user answered.
namespace messageAnswer {
inline constexpr int ok = 1;
inline constexpr int cancel = 2;
inline constexpr int yes = 6;
inline constexpr int no = 7;
} // namespace messageAnswer

// Every message the program shows goes through here, titled "Marvek", so
// that tests can read the messages and answer them.
class clsMessageBox {
public:
    virtual ~clsMessageBox() = default;

    // Returns one of messageAnswer.
    virtual int show(QWidget* owner, const QString& text, int style) = 0;
    // The box shown before the program ends on an error.
    virtual void showFatal(QWidget* owner, const QString& text) = 0;

protected:
    clsMessageBox() = default;
    clsMessageBox(const clsMessageBox&) = default;
    clsMessageBox& operator=(const clsMessageBox&) = default;
};

class QtMessageBox final : public clsMessageBox {
public:
    int show(QWidget* owner, const QString& text, int style) override;
    void showFatal(QWidget* owner, const QString& text) override;
};

} // namespace marvek
