#pragma once

#include <QAbstractListModel>
#include <QString>

#include <vector>

namespace ozm {
class CAnalysisSupport;
}

namespace korvana::desktop {

struct KnownVariable {
    QString name;
    QString label;
    bool operator==(const KnownVariable&) const = default;
};

/// The variables of an analysis in their order, numbered from 1.
std::vector<KnownVariable> knownVariables(ozm::CAnalysisSupport& analysis);

/// Some of the known variables, by number. They can be dragged as `variablesMimeType`.
class VariableModel : public QAbstractListModel {
public:
    static constexpr int NumberRole = Qt::UserRole;

    /// `origin` goes with what is dragged from here. `known` must stay valid.
    VariableModel(const std::vector<KnownVariable>& known, int origin, QObject* parent);

    void setNumbers(std::vector<int> numbers);
    [[nodiscard]] const std::vector<int>& numbers() const { return numbers_; }
    /// Which variables are shown greyed because they are used elsewhere; one flag per known variable.
    void setFaint(std::vector<bool> faint);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    [[nodiscard]] Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

private:
    const std::vector<KnownVariable>& known_;
    std::vector<int> numbers_;
    std::vector<bool> faint_;
    int origin_;
};

/// What was dragged: the origin of the list that it comes from, and variable numbers.
struct DraggedVariables {
    int origin = -1;
    std::vector<int> numbers;
};
bool holdsVariables(const QMimeData* data);
DraggedVariables draggedVariables(const QMimeData& data);

} // namespace korvana::desktop
