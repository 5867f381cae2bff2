#pragma once

#include "support/dialogs/DialogTemplate.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <span>

class QCompleter;
class QLineEdit;
class QStringListModel;

namespace ozm {
class CAnalysisSupport;
}

namespace korvana::desktop {

/// Offers the variables of the data in a line that holds an expression: while a word is typed, those whose
/// names begin with it, and all of them on Ctrl+Space; and further names, that the expression gives a
/// meaning. The chosen name takes the place of the word, in backquotes if it would mean something else
/// without them.
class NameCompletion : public QObject {
public:
    /// @param analysis  gives the analysis, nullptr when there is none any more
    /// @param others  string numbers of the further names, offered before those of variables
    NameCompletion(QLineEdit* line, std::function<ozm::CAnalysisSupport*()> analysis,
                   std::span<const ozm::ChoiceTemplate> others);

    /// Offers the names that begin with the word before the cursor; all where there is none.
    void offer();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Where the word before the cursor begins, and what of a name was typed.
    struct Word {
        int start = 0;
        QString typed;
    };
    [[nodiscard]] Word word() const;
    void offerTyped();
    void insert(const QString& name);
    [[nodiscard]] QString written(const QString& name) const;
    [[nodiscard]] QStringList otherNames(ozm::CAnalysisSupport& analysis) const;
    /// False when no name begins so.
    bool findNames(const QString& beginning);

    QLineEdit* line_;
    std::function<ozm::CAnalysisSupport*()> analysis_;
    std::span<const ozm::ChoiceTemplate> others_;
    QStringListModel* names_;
    QCompleter* completer_;
    bool inserting_ = false;
};

} // namespace korvana::desktop
