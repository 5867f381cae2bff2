#include "apps/desktop/data/StartPage.h"

#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/RecentFiles.h"

#include <QCommandLinkButton>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace korvana::desktop {
namespace {

/// An ampersand in a button's text would mark a key.
QString buttonText(const QString& text) {
    return shown(text.toStdString()).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

StartPage::StartPage(const RecentFiles& recent, QWidget* parent)
    : QWidget(parent), recent_(recent), list_(new QWidget(this)), files_(new QVBoxLayout(list_)) {
    auto* nothing = new QLabel(tr("No data yet"), this);
    QFont large = nothing->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    nothing->setFont(large);
    auto* open = new QPushButton(tr("Open a Data File..."), this);
    open->setObjectName(QStringLiteral("open"));
    open->setAutoDefault(true);
    open->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    auto* drop = new QLabel(tr("or drop one onto the window."), this);
    setFocusProxy(open);
    connect(open, &QPushButton::clicked, this, &StartPage::openRequested);

    files_->setContentsMargins(0, 0, 0, 0);
    files_->setSpacing(0);
    auto* layout = new QVBoxLayout(this);
    const int margin = fontMetrics().height() * 2;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(nothing);
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addWidget(open);
    layout->addWidget(drop);
    layout->addSpacing(margin / 2);
    layout->addWidget(list_);
    layout->addStretch(1);
    listFiles();
}

void StartPage::listFiles() {
    constexpr int most = 6;
    while (QLayoutItem* item = files_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString& path : recent_.files()) {
        const QFileInfo file(path);
        if (files_->count() == most) continue;
        auto* button = new QCommandLinkButton(buttonText(file.fileName()),
                                              buttonText(QDir::toNativeSeparators(file.path())), list_);
        button->setToolTip(QDir::toNativeSeparators(path));
        button->setMinimumWidth(1); // a long path does not make the window wide
        connect(button, &QCommandLinkButton::clicked, this, [this, path] { emit fileRequested(path); });
        files_->addWidget(button);
    }
    list_->setVisible(files_->count() > 0);
}

void StartPage::showEvent(QShowEvent* event) {
    listFiles();
    QWidget::showEvent(event);
}

} // namespace korvana::desktop
