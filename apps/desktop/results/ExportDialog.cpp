#include "apps/desktop/results/ExportDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QVBoxLayout>

#include "apps/desktop/results/OutputExport.h"
#include "apps/desktop/text/BoxTexts.h"
#include "apps/desktop/text/ErrorLine.h"

namespace korvana::desktop {
namespace {

struct FormatText {
    OutputFormat format;
    const char* text;
    bool atFirst;
};

constexpr std::array<FormatText, outputFormatCount> formatTexts{
    {{OutputFormat::Html, QT_TRANSLATE_NOOP("ExportDialog", "&Web page with everything (HTML)"), true},
     {OutputFormat::Xlsx, QT_TRANSLATE_NOOP("ExportDialog", "Spreadsheet &workbook (XLSX)"), true},
     {OutputFormat::Txt, QT_TRANSLATE_NOOP("ExportDialog", "Plain &text (TXT)"), false},
     {OutputFormat::Csv, QT_TRANSLATE_NOOP("ExportDialog", "A file for each table (&CSV)"), false},
     {OutputFormat::Json, QT_TRANSLATE_NOOP("ExportDialog", "Everything for programs (&JSON)"), false},
     {OutputFormat::Svg, QT_TRANSLATE_NOOP("ExportDialog", "Charts, scalable (&SVG)"), false},
     {OutputFormat::Png, QT_TRANSLATE_NOOP("ExportDialog", "Charts, pixels (P&NG)"), false},
     {OutputFormat::Pdf, QT_TRANSLATE_NOOP("ExportDialog", "Charts, printable (&PDF)"), false},
     {OutputFormat::Py, QT_TRANSLATE_NOOP("ExportDialog", "Script that repeats the run (P&Y)"), true}}};

QString settingsKey(OutputFormat format) {
    return QStringLiteral("export/%1").arg(QLatin1String(endingOf(format)));
}

QString listed(const QString& heading, const QStringList& files) {
    constexpr qsizetype most = 10;
    QString list = heading + QLatin1Char('\n') + files.mid(0, most).join(QLatin1Char('\n'));
    if (files.size() > most) list += ExportDialog::tr("\nand %1 more").arg(files.size() - most);
    return list;
}

} // namespace

ExportDialog::ExportDialog(const QString& runTitle, int runs, QWidget* parent)
    : QDialog(parent),
      thisRun_(new QRadioButton(tr("This &run: %1").arg(QString(runTitle).replace('&', "&&")))),
      allRuns_(new QRadioButton(tr("&All %1 runs, each in a folder of its own").arg(runs))),
      directory_(new QLineEdit), problem_(new ErrorLine(this)) {
    setWindowTitle(tr("Export Results"));
    const QSettings settings;
    auto* column = new QVBoxLayout(this);

    auto* what = new QGroupBox(tr("What"));
    auto* whatColumn = new QVBoxLayout(what);
    whatColumn->addWidget(thisRun_);
    whatColumn->addWidget(allRuns_);
    thisRun_->setChecked(true);
    what->setVisible(runs > 1);
    column->addWidget(what);

    auto* group = new QGroupBox(tr("Formats"));
    auto* grid = new QGridLayout(group);
    constexpr int rows = 5;
    for (std::size_t i = 0; i < formatTexts.size(); ++i) {
        const FormatText& format = formatTexts[i];
        auto* box = new QCheckBox(tr(format.text));
        box->setChecked(settings.value(settingsKey(format.format), format.atFirst).toBool());
        formats_[static_cast<std::size_t>(format.format)] = box;
        grid->addWidget(box, static_cast<int>(i) % rows, static_cast<int>(i) / rows);
    }
    column->addWidget(group);

    auto* row = new QHBoxLayout;
    auto* label = new QLabel(tr("F&older:"));
    label->setBuddy(directory_);
    directory_->setText(settings.value("export/folder", QDir::homePath()).toString());
    directory_->setMinimumWidth(45 * fontMetrics().averageCharWidth());
    auto* browse = new QPushButton(tr("&Browse..."));
    browse->setAutoDefault(false);
    row->addWidget(label);
    row->addWidget(directory_, 1);
    row->addWidget(browse);
    column->addLayout(row);
    auto* note = new QLabel(
        tr("The folder is created if necessary, and holds one run. You are asked before files are replaced "
           "or removed."));
    note->setWordWrap(true);
    column->addWidget(note);
    column->addWidget(problem_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    QPushButton* go = buttons->addButton(tr("&Export"), QDialogButtonBox::AcceptRole);
    column->addWidget(buttons);
    go->setDefault(true); // a button must be in the dialog to be its default
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString chosen =
            QFileDialog::getExistingDirectory(this, tr("Folder for the Results"), directory_->text());
        if (!chosen.isEmpty()) directory_->setText(chosen);
    });
}

void ExportDialog::chooseAllRuns() {
    allRuns_->setChecked(true);
}

bool ExportDialog::mayReplace() {
    const FilesAtStake files = atStake_ ? atStake_(*this) : FilesAtStake{};
    if (files.replaced.isEmpty() && files.removed.isEmpty()) return true;
    QStringList what;
    if (files.replaced.size() == 1) what += tr("One file exists already and would be replaced.");
    if (files.replaced.size() > 1)
        what += tr("%1 files exist already and would be replaced.").arg(files.replaced.size());
    if (files.removed.size() == 1) what += tr("One file of an earlier run there would be removed.");
    if (files.removed.size() > 1)
        what += tr("%1 files of an earlier run there would be removed.").arg(files.removed.size());
    QStringList lists;
    if (!files.replaced.isEmpty()) lists += listed(tr("Replaced:"), files.replaced);
    if (!files.removed.isEmpty()) lists += listed(tr("Removed:"), files.removed);
    QMessageBox box(QMessageBox::Warning, windowTitle(), what.join(QLatin1Char('\n')), QMessageBox::Cancel,
                    this);
    box.setInformativeText(lists.join(QStringLiteral("\n\n")));
    QPushButton* replace = box.addButton(tr("&Replace"), QMessageBox::AcceptRole);
    box.setDefaultButton(QMessageBox::Cancel);
    showBox(box);
    return box.clickedButton() == replace;
}

bool ExportDialog::allRuns() const {
    return allRuns_->isChecked();
}

FormatSet ExportDialog::formats() const {
    FormatSet set;
    for (std::size_t i = 0; i < formats_.size(); ++i)
        if (formats_[i]->isChecked()) set.add(static_cast<OutputFormat>(i));
    return set;
}

QString ExportDialog::directory() const {
    return directory_->text().trimmed();
}

void ExportDialog::showProblem(const QString& problem) {
    problem_->tell(problem);
}

void ExportDialog::accept() {
    if (formats().empty()) {
        formats_[static_cast<std::size_t>(OutputFormat::Html)]->setFocus();
        showProblem(tr("No format is chosen; check at least one."));
        return;
    }
    if (directory().isEmpty()) {
        directory_->setFocus();
        showProblem(tr("No folder is given; type its path or browse to it."));
        return;
    }
    if (!mayReplace()) return;
    QSettings settings;
    for (std::size_t i = 0; i < formats_.size(); ++i)
        settings.setValue(settingsKey(static_cast<OutputFormat>(i)), formats_[i]->isChecked());
    settings.setValue("export/folder", directory());
    QDialog::accept();
}

} // namespace korvana::desktop
