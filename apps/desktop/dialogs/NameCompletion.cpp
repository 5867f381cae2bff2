#include "apps/desktop/dialogs/NameCompletion.h"

#include "support/CAnalysisSupport.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QStringListModel>

#include <algorithm>
#include <memory>
#include <utility>

namespace korvana::desktop {
namespace {

constexpr QChar quote = u'`';

bool isWordLetter(QChar letter) {
    return letter.isLetterOrNumber() || letter == u'_' || letter == u'.';
}

QString inQuotes(QString name) {
    return quote + name.replace(quote, QString(2, quote)) + quote;
}

} // namespace

NameCompletion::NameCompletion(QLineEdit* line, std::function<ozm::CAnalysisSupport*()> analysis,
                               std::span<const ozm::ChoiceTemplate> others)
    : QObject(line), line_(line), analysis_(std::move(analysis)), others_(others),
      names_(new QStringListModel(this)), completer_(new QCompleter(names_, this)) {
    completer_->setWidget(line);
    completer_->setCaseSensitivity(Qt::CaseInsensitive);
    completer_->setMaxVisibleItems(12);
    line->installEventFilter(this);
    connect(line, &QLineEdit::textEdited, this, &NameCompletion::offerTyped);
    connect(completer_, qOverload<const QString&>(&QCompleter::activated), this, &NameCompletion::insert);
}

NameCompletion::Word NameCompletion::word() const {
    const QString before = line_->text().left(line_->cursorPosition());
    const auto length = static_cast<int>(before.size());
    if (before.count(quote) % 2 == 1) {
        const auto start = static_cast<int>(before.lastIndexOf(quote));
        return {start, before.mid(start + 1)};
    }
    int start = length;
    while (start > 0 && isWordLetter(before.at(start - 1)))
        --start;
    // A number is no word, nor are the letters after its digits.
    const bool isNumber = start < length && (before.at(start).isDigit() || before.at(start) == u'.');
    return isNumber ? Word{length, {}} : Word{start, before.mid(start)};
}

QStringList NameCompletion::otherNames(ozm::CAnalysisSupport& analysis) const {
    QStringList names;
    for (const ozm::ChoiceTemplate& other : others_)
        names += QString::fromStdString(analysis.GetResourceString(other.text)).trimmed();
    return names;
}

bool NameCompletion::findNames(const QString& beginning) {
    ozm::CAnalysisSupport* analysis = analysis_();
    if (analysis == nullptr) return false;
    const QStringList others = otherNames(*analysis);
    QStringList names = others;
    for (int variable = 1; variable <= analysis->NumberOfVariables(); ++variable) {
        std::string name;
        if (analysis->getvn5(variable, name) != 0 || name.empty()) continue;
        const QString shown = QString::fromStdString(name);
        names += others.contains(shown, Qt::CaseInsensitive) ? inQuotes(shown) : shown;
    }
    if (names != names_->stringList()) names_->setStringList(names);
    completer_->setCompletionPrefix(beginning);
    return completer_->completionCount() > 0;
}

void NameCompletion::offer() {
    if (!findNames(word().typed)) return;
    // As wide as its names; its place is that of the line.
    QRect place = line_->rect();
    const int wanted = completer_->popup()->sizeHintForColumn(0) +
                       completer_->popup()->verticalScrollBar()->sizeHint().width() +
                       line_->fontMetrics().height();
    place.setWidth(std::min(place.width(), wanted));
    completer_->complete(place);
}

void NameCompletion::offerTyped() {
    if (inserting_) return;
    const QString typed = word().typed;
    const bool found = !typed.isEmpty() && findNames(typed);
    const bool complete =
        found && completer_->completionCount() == 1 && completer_->currentCompletion() == typed;
    if (found && !complete)
        offer();
    else
        completer_->popup()->hide();
}

QString NameCompletion::written(const QString& name) const {
    const std::string text = name.toStdString();
    if (ozm::CAnalysisSupport* analysis = analysis_()) {
        for (const QString& other : otherNames(*analysis))
            if (name == other || name.compare(inQuotes(other), Qt::CaseInsensitive) == 0) return name;
        std::unique_ptr<ozm::CompiledExpression> compiled;
        std::string error;
        if (analysis->COMP(text, {}, compiled, error) == 0 && compiled->References().size() == 1 &&
            compiled->References().front() == analysis->FindVariable(text))
            return name;
    }
    return inQuotes(name);
}

void NameCompletion::insert(const QString& name) {
    const Word replaced = word();
    const int end = line_->cursorPosition();
    line_->setSelection(replaced.start, end - replaced.start);
    inserting_ = true;
    line_->insert(written(name));
    inserting_ = false;
}

bool NameCompletion::eventFilter(QObject* watched, QEvent* event) {
    const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
    if (watched != line_ || key == nullptr || key->key() != Qt::Key_Space ||
        key->modifiers() != Qt::ControlModifier)
        return QObject::eventFilter(watched, event);
    offer();
    return true;
}

} // namespace korvana::desktop
