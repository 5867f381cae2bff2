#pragma once

#include <QLabel>

class QDialog;

namespace korvana::desktop {

/// What is wrong with the entries of a dialog: a line in the column of its layout, as high as its text needs
/// at the dialog's width, which grows for it and is never made smaller. A layout asks a window only for the
/// height of one line, and lets the others lie over the fields. It is hidden while there is nothing to say.
class ErrorLine final : public QLabel {
public:
    explicit ErrorLine(QDialog* dialog);

    void tell(const QString& error);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takeRoom();
};

} // namespace korvana::desktop
