#include "apps/desktop/data/OpenOptionsDialog.h"

#include "apps/desktop/data/GridText.h"
#include "apps/desktop/text/FixedFont.h"
#include "host/data/ByteSource.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>
#include <exception>
#include <initializer_list>
#include <utility>

namespace korvana::desktop {
namespace {

constexpr int anotherSign = -2;

/// Choices with the numbers that stand for them, the first: as found in the file.
QComboBox* choice(const char* name, std::initializer_list<std::pair<QString, int>> entries, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    box->addItem(QObject::tr("as found in the file"), -1);
    for (const auto& [text, value] : entries)
        box->addItem(text, value);
    return box;
}

template <class Value>
void choose(QComboBox& box, const std::optional<Value>& value) {
    if (value) box.setCurrentIndex(box.findData(static_cast<int>(*value)));
}

template <class Value>
std::optional<Value> chosen(const QComboBox& box) {
    const int value = box.currentData().toInt();
    return value < 0 ? std::nullopt : std::optional(static_cast<Value>(value));
}

/// The first lines of a file as they are, tabs shown as arrows; empty if they cannot be read, and for a pipe,
/// which can be read only once.
QString beginning(const QString& path) {
    constexpr int most = 5;
    if (!QFileInfo(path).isFile()) return {};
    std::array<char, 4096> bytes{};
    QString text;
    try {
        const auto source = openSource(QFile::encodeName(path).toStdString());
        const auto count = static_cast<qsizetype>(source->readFully(bytes));
        text = QString::fromUtf8(bytes.data(), count);
        if (text.chopped(std::min<qsizetype>(text.size(), 4)).contains(QChar::ReplacementCharacter))
            text = QString::fromLatin1(bytes.data(), count);
    } catch (const std::exception&) {
        return {};
    }
    QStringList lines = text.split(QLatin1Char('\n')).mid(0, most);
    for (QString& line : lines)
        line = line.remove(QLatin1Char('\r')).replace(QLatin1Char('\t'), QStringLiteral(" \u2192 "));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

OpenOptionsDialog::OpenOptionsDialog(const QString& path, const ReadOptions& options, QWidget* parent)
    : QDialog(parent), separator_(choice("separator",
                                         {{tr("comma  ,"), ','},
                                          {tr("semicolon  ;"), ';'},
                                          {tr("tab"), '\t'},
                                          {tr("pipe  |"), '|'},
                                          {tr("another character"), anotherSign}},
                                         this)),
      sign_(new QLineEdit(this)), fault_(new QLabel(this)),
      decimal_(choice("decimal", {{tr("point  61.5"), '.'}, {tr("comma  61,5"), ','}}, this)),
      header_(choice("header",
                     {{tr("the names of the variables"), static_cast<int>(HeaderLine::Yes)},
                      {tr("the first case"), static_cast<int>(HeaderLine::No)}},
                     this)),
      dates_(choice("dates",
                    {{tr("day, month, year"), static_cast<int>(DateOrder::DayMonthYear)},
                     {tr("month, day, year"), static_cast<int>(DateOrder::MonthDayYear)},
                     {tr("year, month, day"), static_cast<int>(DateOrder::YearMonthDay)}},
                    this)) {
    setWindowTitle(tr("Open With Options"));
    auto* file = new QLabel(shown(QFileInfo(path).fileName().toStdString()), this);
    file->setTextFormat(Qt::PlainText);
    auto* lines = new QPlainTextEdit(beginning(path), this);
    lines->setReadOnly(true);
    lines->setTabChangesFocus(true);
    lines->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines->setFont(fixedFont());
    lines->setAccessibleName(tr("The first lines of the file"));
    lines->setMinimumHeight(lines->fontMetrics().lineSpacing() * 7);
    lines->setVisible(!lines->toPlainText().isEmpty());

    sign_->setObjectName(QStringLiteral("sign"));
    sign_->setMaxLength(1);
    sign_->setMaximumWidth(fontMetrics().averageCharWidth() * 6);
    sign_->setAccessibleName(tr("Character between cells"));
    auto* separators = new QHBoxLayout;
    separators->addWidget(separator_, 1);
    separators->addWidget(sign_);
    fault_->setObjectName(QStringLiteral("fault"));
    fault_->hide();
    auto* between = new QVBoxLayout;
    between->addLayout(separators);
    between->addWidget(fault_);
    const auto showSign = [this] {
        sign_->setVisible(separator_->currentData().toInt() == anotherSign);
        fault_->hide();
    };
    connect(separator_, &QComboBox::currentIndexChanged, this, showSign);
    connect(separator_, &QComboBox::activated, this, [this] {
        if (!sign_->isHidden()) sign_->setFocus();
    });
    connect(sign_, &QLineEdit::textChanged, fault_, &QWidget::hide);

    auto* fields = new QFormLayout;
    const auto add = [&](const QString& text, QComboBox* field, QLayout* row) {
        auto* label = new QLabel(text, this);
        label->setBuddy(field);
        row == nullptr ? fields->addRow(label, field) : fields->addRow(label, row);
    };
    add(tr("&Between cells"), separator_, between);
    add(tr("&Decimal mark"), decimal_, nullptr);
    add(tr("&First line"), header_, nullptr);
    add(tr("Dates such as &01/02/1995"), dates_, nullptr);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Open)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &OpenOptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &OpenOptionsDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(file);
    layout->addWidget(lines, 1);
    layout->addLayout(fields);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 70, sizeHint().height());

    choose(*separator_, options.separator);
    if (options.separator && separator_->currentIndex() < 0) {
        choose(*separator_, std::optional(anotherSign));
        sign_->setText(QString(QLatin1Char(*options.separator)));
    }
    choose(*decimal_, options.decimalMark);
    if (options.header != HeaderLine::Automatic) choose(*header_, std::optional(options.header));
    choose(*dates_, options.dates);
    showSign();
    separator_->setFocus();
}

ReadOptions OpenOptionsDialog::options() const {
    ReadOptions options;
    options.separator = chosen<char>(*separator_);
    if (!sign_->isHidden() && !sign_->text().isEmpty()) options.separator = sign_->text().front().toLatin1();
    options.decimalMark = chosen<char>(*decimal_);
    options.header = chosen<HeaderLine>(*header_).value_or(HeaderLine::Automatic);
    options.dates = chosen<DateOrder>(*dates_);
    return options;
}

void OpenOptionsDialog::accept() {
    const bool wanted = !sign_->isHidden();
    if (wanted && (sign_->text().trimmed().isEmpty() || sign_->text().front().toLatin1() == 0)) {
        fault_->setText(
            sign_->text().trimmed().isEmpty()
                ? tr("Enter the character between the cells.")
                : tr("'%1' cannot separate cells; enter a character such as / or :.").arg(sign_->text()));
        showAsError(*fault_, true);
        fault_->show();
        sign_->setFocus();
        sign_->selectAll();
        return;
    }
    QDialog::accept();
}

} // namespace korvana::desktop
