#pragma once

#include "host/data/DataSet.h"

#include <QWidget>

class QLineEdit;
class QListView;
class QSortFilterProxyModel;
class QStandardItemModel;

namespace korvana::desktop {

/// A list of variables with a field that filters it by a part of the name or the label.
class VariableChooser : public QWidget {
    Q_OBJECT

public:
    /// @param numbersOnly  leaves out variables of texts and dates
    VariableChooser(const DataSet& dataSet, bool numbersOnly, QWidget* parent = nullptr);

    /// The current variable, counted from 0; -1 if there is none.
    [[nodiscard]] int current() const;
    void setCurrent(int variable0);
    [[nodiscard]] int count() const;

    [[nodiscard]] QLineEdit* search() const { return search_; }
    [[nodiscard]] QListView* list() const { return list_; }

signals:
    void currentChanged(int variable0);
    /// A variable was double-clicked.
    void chosen(int variable0);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QStandardItemModel* all_;
    QSortFilterProxyModel* found_;
    QLineEdit* search_;
    QListView* list_;
};

} // namespace korvana::desktop
