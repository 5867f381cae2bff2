#include "apps/desktop/window/RememberedValues.h"

#include "support/CAnalysisSupport.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <QVariant>

#include <type_traits>

namespace korvana::desktop {
namespace {

template <class Value>
constexpr bool isSingle = std::is_same_v<Value, bool> || std::is_same_v<Value, int> ||
                          std::is_same_v<Value, double> || std::is_same_v<Value, std::string>;

QString keyOf(ozm::CAnalysisDialog& dialog, const ozm::ControlTemplate& control) {
    return QStringLiteral("analysis%1/dialog%2/control%3")
        .arg(dialog.Analysis().GetAnalysisID())
        .arg(dialog.Template().number)
        .arg(control.id);
}

} // namespace

RememberedValues::RememberedValues(const QString& settingsFile)
    : settings_(settingsFile.isEmpty() ? std::make_unique<QSettings>()
                                       : std::make_unique<QSettings>(settingsFile, QSettings::IniFormat)) {}

void RememberedValues::recall(ozm::CAnalysisDialog& dialog) {
    if (!recalled_.insert(dialog.Template().number).second) return;
    for (const ozm::ControlTemplate& control : dialog.Template().controls) {
        const QVariant kept = control.remembered ? settings_->value(keyOf(dialog, control)) : QVariant{};
        if (!kept.isValid()) continue;
        ozm::ControlValue value = dialog.Value(control.id);
        const bool fits = std::visit(
            [&kept]<class Value>(Value& one) {
                if constexpr (std::is_same_v<Value, std::string>) {
                    one = kept.toString().toStdString();
                } else if constexpr (isSingle<Value>) {
                    QVariant converted = kept;
                    if (!converted.convert(QMetaType::fromType<Value>())) return false;
                    one = converted.value<Value>();
                }
                return isSingle<Value>;
            },
            value);
        if (fits) static_cast<void>(dialog.PutValue(control.id, std::move(value)));
    }
}

void RememberedValues::keep(ozm::CAnalysisDialog& dialog) {
    for (const ozm::ControlTemplate& control : dialog.Template().controls) {
        if (!control.remembered) continue;
        const QVariant value = std::visit(
            []<class Value>(const Value& one) -> QVariant {
                if constexpr (std::is_same_v<Value, std::string>)
                    return QString::fromStdString(one);
                else if constexpr (isSingle<Value>)
                    return one;
                else
                    return {};
            },
            dialog.Value(control.id));
        const QString key = keyOf(dialog, control);
        if (value.isValid() && settings_->value(key) != value) settings_->setValue(key, value);
    }
}

} // namespace korvana::desktop
