#include "apps/desktop/dialogs/CodeListField.h"

#include "apps/desktop/dialogs/CodeChooser.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QStringList>
#include <QToolButton>

#include <algorithm>

namespace korvana::desktop {
namespace {

constexpr int mostListed = 5000;   ///< of more, nobody looks for one in a list
constexpr qsizetype mostTold = 25; ///< labels in a tooltip

/// The texts between commas; a comma within double quotes belongs to its text.
QStringList splitAtCommas(const QString& line) {
    QStringList parts;
    QString part;
    bool quoted = false;
    for (const QChar c : line) {
        if (c == QLatin1Char('"')) {
            quoted = !quoted;
        } else if (c == QLatin1Char(',') && !quoted) {
            parts.append(std::exchange(part, {}).trimmed());
        } else {
            part.append(c);
        }
    }
    parts.append(part.trimmed());
    parts.removeAll(QString{});
    return parts;
}

} // namespace

CodeListField::CodeListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : CodesOfVariable(control, host, parent), line_(new QLineEdit(this)), open_(new QToolButton(this)) {
    line_->setPlaceholderText(QStringLiteral("codes or labels, separated by commas"));
    line_->setMinimumWidth(line_->fontMetrics().averageCharWidth() * 32);
    line_->setAccessibleName(plainCaptionOf(control));
    open_->setText(QStringLiteral("…"));
    open_->setToolTip(QStringLiteral("Choose from the codes in the data"));
    open_->setAccessibleName(plainCaptionOf(control) + QStringLiteral(": choose from the codes in the data"));
    open_->setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(line_);
    layout->addWidget(open_);
    setFocusProxy(line_);
    QObject::connect(line_, &QLineEdit::editingFinished, this, [this] { commit(); });
    QObject::connect(line_, &QLineEdit::textEdited, this, [this] { settled(); });
    QObject::connect(open_, &QToolButton::clicked, this, [this] { openList(); });
}

void CodeListField::showValue(const ozm::ControlValue& value) {
    if (const auto* codes = std::get_if<std::vector<double>>(&value)) codes_ = *codes;
    line_->setModified(false);
    showCodes();
}

void CodeListField::dataChanged() {
    CodesOfVariable::dataChanged();
    showCodes();
}

void CodeListField::showCodes() {
    if (line_->isModified()) return;
    QStringList codes;
    QStringList labels;
    for (const double code : codes_) {
        codes.append(textOf(code));
        const QString label = labelOf(code);
        if (!label.isEmpty()) labels.append(codes.back() + " = " + label);
    }
    line_->setText(codes.join(QStringLiteral(", ")));
    line_->setModified(false);
    line_->setCursorPosition(0); // of many codes, the first are seen
    if (const qsizetype more = labels.size() - mostTold; more > 0) {
        labels.resize(mostTold);
        labels.append(QStringLiteral("and %1 more").arg(more));
    }
    line_->setToolTip(labels.join(QLatin1Char('\n')));
}

bool CodeListField::hasPendingEdit() const {
    return line_->isModified();
}

bool CodeListField::commit() {
    if (!line_->isModified() || host().analysis() == nullptr) return true;
    std::vector<double> codes;
    for (const QString& text : splitAtCommas(line_->text())) {
        const auto code = codeOf(text);
        if (!code) return complain(noCode(text, variable()));
        if (std::find(codes.begin(), codes.end(), *code) != codes.end())
            return complain(QStringLiteral("The code %1 is there twice.").arg(textOf(*code)));
        codes.push_back(*code);
    }
    return host().put(*this, std::move(codes)) && settled();
}

void CodeListField::openList() {
    ozm::CAnalysisSupport* analysis = host().analysis();
    if (analysis == nullptr || !commit()) return;
    if (variable() == 0) {
        complain(chooseFirst() + QLatin1Char('.'));
        return;
    }
    const CodeOffer offer = offeredCodes(*analysis, variable(), {.most = mostListed});
    if (offer.codes.empty()) {
        complain(offer.failed ? QStringLiteral("The codes could not be read; type them.")
                              : QStringLiteral("No selected case has a value."));
        return;
    }
    std::vector<double> codes;
    QStringList texts;
    for (const ozm::CodeCount& code : offer.codes) {
        codes.push_back(code.code);
        texts.append(offerText(textOf(code.code), code));
    }
    const QPointer<CodeChooser> window =
        new CodeChooser(plainCaptionOf(control()), codes, texts, codes_, offer.more, this);
    const bool accepted = window->exec() == QDialog::Accepted;
    if (window == nullptr) return; // the dialog was closed while its list was open, and this field with it
    std::vector<double> chosen = window->chosen();
    window->deleteLater();
    if (accepted && host().put(*this, std::move(chosen))) settled();
}

} // namespace korvana::desktop
