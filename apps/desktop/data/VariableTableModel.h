#pragma once

#include "apps/desktop/data/VariableCounts.h"
#include "host/session/ActiveData.h"

#include <QAbstractTableModel>

namespace korvana::desktop {

/// The variables of the active data, one row each; label and missing code can be edited.
class VariableTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Label, Kind, MissingCode, ValueLabels, Cases, Missing, Distinct, Range, columns };

    explicit VariableTableModel(QObject* parent = nullptr);

    void show(ActiveData* data);
    [[nodiscard]] ActiveData* active() const { return data_; }
    void setEditable(bool editable) { editable_ = editable; }
    [[nodiscard]] bool editable() const { return editable_; }
    [[nodiscard]] VariableCounts& counts() { return counts_; }

    /// Changes what is known about a variable. False if that was refused; refused() was emitted with the
    /// reason.
    bool describe(int variable0, const std::string& label, double missingCode,
                  const std::vector<ValueLabel>& valueLabels);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void described(int variable0);
    void refused(const QString& why);

private:
    [[nodiscard]] bool current() const { return data_ != nullptr && data_->generation() == generation_; }
    [[nodiscard]] QString text(int variable0, int column) const;
    bool setMissingCode(int variable0, const QString& text);

    ActiveData* data_ = nullptr;
    int generation_ = 0;
    int variables_ = 0; ///< as last announced to the views
    bool editable_ = true;
    VariableCounts counts_;
};

} // namespace korvana::desktop
