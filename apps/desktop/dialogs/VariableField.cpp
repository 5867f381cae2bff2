#include "apps/desktop/dialogs/VariableField.h"

#include "apps/desktop/dialogs/RoleBox.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>
#include <limits>

namespace korvana::desktop {
namespace {

bool holds(const std::vector<int>& numbers, int number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

} // namespace

VariableField::VariableField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), search_(new QLineEdit(this)), available_(new DragList(this)),
      availableModel_(new VariableModel(known_, -1, this)) {
    for (const ozm::RoleTemplate& role : control.roles)
        boxes_.push_back(new RoleBox(role, static_cast<int>(boxes_.size()), known_, this));
    build();
    connectAvailable();
    for (int role = 0; role < static_cast<int>(boxes_.size()); ++role)
        connectBox(role);
    dataChanged();
}

void VariableField::build() {
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(QStringLiteral("Search"));
    search_->setAccessibleName(QStringLiteral("Search the variables"));
    search_->setClearButtonEnabled(true);
    search_->installEventFilter(this);
    available_->setObjectName(QStringLiteral("available"));
    available_->setModel(availableModel_);
    available_->setAccessibleName(plainCaptionOf(control()));
    available_->setPlaceholder(QStringLiteral("no variable"));
    available_->setMinimumWidth(available_->fontMetrics().averageCharWidth() * 28);
    available_->setMinimumHeight(available_->fontMetrics().height() * 9);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    auto* caption = new QLabel(captionOf(control()), this);
    caption->setBuddy(available_);
    caption->setVisible(!captionOf(control()).isEmpty());
    int row = 0;
    for (const RoleBox* box : boxes_) {
        box->layOut(*grid, row, 1);
        row += 2;
    }
    auto* left = new QVBoxLayout;
    left->addWidget(caption);
    left->addWidget(search_);
    left->addWidget(available_, 1);
    grid->addLayout(left, 0, 0, std::max(row + 1, 1), 1);
    // Boxes of one line leave the rest of the height below them.
    const bool allTakeOne =
        std::all_of(boxes_.begin(), boxes_.end(), [](const RoleBox* box) { return box->takesOne(); });
    if (allTakeOne) grid->setRowStretch(row, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(2, 1);
}

void VariableField::connectAvailable() {
    QObject::connect(search_, &QLineEdit::textChanged, this, [this] { filter(); });
    available_->onChosen = [this] {
        add(nextRole(), available_->selectedNumbers(), std::numeric_limits<int>::max());
    };
    available_->onKey = [this](const QKeyEvent& event) { return availableKey(event); };
    available_->onDropped = [this](const DraggedVariables& dragged, int) {
        if (dragged.origin >= 0) remove(dragged.origin, dragged.numbers);
    };
    available_->onEntered = [this] {
        emptying_ = -1;
        showState();
    };
}

void VariableField::connectBox(int role) {
    DragList& list = box(role).list();
    list.onChosen = [this, role] { remove(role, box(role).list().selectedNumbers()); };
    list.onKey = [this, role](const QKeyEvent& event) { return boxKey(role, event); };
    list.onDropped = [this, role](const DraggedVariables& dragged, int row) {
        add(role, dragged.numbers, row, dragged.origin);
    };
    list.onEntered = [this, role] {
        usedLast_ = role;
        emptying_ = box(role).numbers().empty() ? -1 : role;
        for (int other = 0; other < static_cast<int>(boxes_.size()); ++other)
            if (other != role) box(other).list().clearSelection();
        showState();
    };
    QObject::connect(&box(role).arrow(), &QToolButton::clicked, this, [this, role] {
        if (emptying_ == role)
            remove(role, box(role).list().selectedNumbers());
        else
            add(role, available_->selectedNumbers(), std::numeric_limits<int>::max());
    });
}

void VariableField::showValue(const ozm::ControlValue& value) {
    const auto* selection = std::get_if<ozm::VariableSelection>(&value);
    if (selection == nullptr) return;
    std::vector<bool> used(known_.size());
    for (std::size_t role = 0; role < boxes_.size(); ++role) {
        const std::vector<int> numbers = role < selection->size() ? (*selection)[role] : std::vector<int>{};
        boxes_[role]->setNumbers(numbers);
        for (const int number : numbers)
            if (number >= 1 && number <= static_cast<int>(used.size()))
                used[static_cast<std::size_t>(number - 1)] = true;
    }
    availableModel_->setFaint(std::move(used));
    showState();
}

void VariableField::dataChanged() {
    ozm::CAnalysisSupport* analysis = host().analysis();
    if (analysis == nullptr) return;
    std::vector<KnownVariable> known = knownVariables(*analysis);
    if (known == known_) return;
    known_ = std::move(known);
    filter();
    ozm::VariableSelection chosen;
    for (RoleBox* box : boxes_) {
        box->list().viewport()->update();
        chosen.push_back(box->numbers());
    }
    showValue(chosen); // updates which variables are greyed
}

void VariableField::filter() {
    const QString wanted = search_->text().trimmed();
    std::vector<int> numbers;
    for (int number = 1; number <= static_cast<int>(known_.size()); ++number) {
        const KnownVariable& variable = known_[static_cast<std::size_t>(number - 1)];
        if (wanted.isEmpty() || variable.name.contains(wanted, Qt::CaseInsensitive) ||
            variable.label.contains(wanted, Qt::CaseInsensitive) || wanted == QString::number(number))
            numbers.push_back(number);
    }
    availableModel_->setNumbers(std::move(numbers));
    available_->setPlaceholder(wanted.isEmpty() ? QStringLiteral("The data have no variables")
                                                : QStringLiteral("No variable matches"));
    // So that a key chooses the match.
    if (!wanted.isEmpty() && availableModel_->rowCount() > 0)
        available_->setCurrentIndex(availableModel_->index(0));
}

void VariableField::showState() {
    if (emptying_ >= 0 && box(emptying_).numbers().empty()) emptying_ = -1;
    const int next = nextRole();
    for (int role = 0; role < static_cast<int>(boxes_.size()); ++role) {
        box(role).setFilling(role != emptying_);
        box(role).setNext(role == next && boxes_.size() > 1);
    }
}

int VariableField::nextRole() const {
    const auto first = [this](auto wanted) {
        const auto found = std::find_if(boxes_.begin(), boxes_.end(), wanted);
        return found != boxes_.end() ? static_cast<int>(found - boxes_.begin()) : -1;
    };
    if (usedLast_ >= 0 && box(usedLast_).hasRoom()) return usedLast_;
    if (const int role = first([](const RoleBox* box) { return box->lacks(); }); role >= 0) return role;
    if (const int role = first([](const RoleBox* box) { return box->hasRoom(); }); role >= 0) return role;
    return std::max(usedLast_, 0);
}

ozm::VariableSelection VariableField::selection() const {
    ozm::VariableSelection lists;
    for (const RoleBox* box : boxes_)
        lists.push_back(box->numbers());
    return lists;
}

void VariableField::add(int role, const std::vector<int>& numbers, int row, int origin) {
    if (role < 0 || role >= static_cast<int>(boxes_.size())) return;
    DragList& list = box(role).list();
    if (numbers.empty()) {
        host().complain(list, QStringLiteral("Select the variables in the list at the left first."));
        return;
    }
    if (const QString reason = standsAlready(role, numbers, origin); !reason.isEmpty()) {
        host().complain(list, reason);
        return;
    }
    ozm::VariableSelection lists = selection();
    std::vector<int>& target = lists[static_cast<std::size_t>(role)];
    auto before = target.begin() + std::min(row, static_cast<int>(target.size()));
    std::vector<int> changed(target.begin(), before);
    std::vector<int> after(before, target.end());
    if (origin == role) { // moved within the box
        std::erase_if(changed, [&](int number) { return holds(numbers, number); });
        std::erase_if(after, [&](int number) { return holds(numbers, number); });
    }
    changed.insert(changed.end(), numbers.begin(), numbers.end());
    changed.insert(changed.end(), after.begin(), after.end());
    target = std::move(changed);
    if (origin >= 0 && origin != role && origin < static_cast<int>(lists.size()))
        std::erase_if(lists[static_cast<std::size_t>(origin)],
                      [&](int number) { return holds(numbers, number); });
    if (host().put(*this, std::move(lists), &list)) host().complaintSettled(list);
}

QString VariableField::standsAlready(int role, const std::vector<int>& numbers, int origin) const {
    for (int other = 0; other < static_cast<int>(boxes_.size()); ++other) {
        if (other == origin) continue; // it loses them anyway
        for (const int number : numbers) {
            if (!holds(box(other).numbers(), number)) continue;
            const auto place = static_cast<std::size_t>(number - 1);
            const QString name = place < known_.size() ? known_[place].name : QString::number(number);
            if (other == role) return QStringLiteral("'%1' is in this box already.").arg(name);
            return QStringLiteral(
                       "'%1' is in '%2' already, and a variable can have only one role; drag it from "
                       "there, or remove it there first.")
                .arg(name, box(other).prompt());
        }
    }
    return {};
}

void VariableField::remove(int role, const std::vector<int>& numbers) {
    if (role < 0 || role >= static_cast<int>(boxes_.size()) || numbers.empty()) return;
    DragList& list = box(role).list();
    const int row = list.currentIndex().row();
    ozm::VariableSelection lists = selection();
    std::erase_if(lists[static_cast<std::size_t>(role)], [&](int number) { return holds(numbers, number); });
    if (!host().put(*this, std::move(lists), &list)) return;
    host().complaintSettled(list);
    // Continue from where the variable was.
    const int rows = static_cast<int>(box(role).numbers().size());
    if (list.hasFocus() && rows > 0)
        list.setCurrentIndex(list.model()->index(std::clamp(row, 0, rows - 1), 0));
}

void VariableField::move(int role, int by) {
    DragList& list = box(role).list();
    const std::vector<int> chosen = list.selectedNumbers();
    ozm::VariableSelection lists = selection();
    std::vector<int>& numbers = lists[static_cast<std::size_t>(role)];
    if (chosen.size() != 1) return;
    const auto from = std::find(numbers.begin(), numbers.end(), chosen.front());
    const auto to = static_cast<int>(from - numbers.begin()) + by;
    if (from == numbers.end() || to < 0 || to >= static_cast<int>(numbers.size())) return;
    std::iter_swap(from, numbers.begin() + to);
    if (host().put(*this, std::move(lists), &list)) list.selectNumbers(chosen);
}

bool VariableField::availableKey(const QKeyEvent& event) {
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    if (!control && event.key() == Qt::Key_Right && !available_->selectedNumbers().empty()) {
        available_->onChosen();
        return true;
    }
    const int role = event.key() - Qt::Key_1;
    if (!control || role < 0 || role >= std::min(static_cast<int>(boxes_.size()), 9)) return false;
    add(role, available_->selectedNumbers(), std::numeric_limits<int>::max());
    return true;
}

bool VariableField::boxKey(int role, const QKeyEvent& event) {
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    switch (event.key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
    case Qt::Key_Left:
        remove(role, box(role).list().selectedNumbers());
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (!control) return false;
        move(role, event.key() == Qt::Key_Up ? -1 : 1);
        return true;
    default:
        return false;
    }
}

void VariableField::focusInEvent(QFocusEvent* /*event*/) {
    // No focus proxy: Tab would skip the search field before it.
    available_->setFocus(Qt::OtherFocusReason);
}

bool VariableField::eventFilter(QObject* watched, QEvent* event) {
    if (watched != search_ || event->type() != QEvent::KeyPress)
        return ControlField::eventFilter(watched, event);
    const auto& pressed = *static_cast<const QKeyEvent*>(event);
    const int key = pressed.key();
    if (key == Qt::Key_Down) {
        available_->setFocus(Qt::TabFocusReason);
        return true;
    }
    if (pressed.modifiers().testFlag(Qt::ControlModifier) && availableKey(pressed)) return true;
    if (key == Qt::Key_Escape && !search_->text().isEmpty()) {
        search_->clear();
        return true;
    }
    return ControlField::eventFilter(watched, event);
}

} // namespace korvana::desktop
