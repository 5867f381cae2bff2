#pragma once

#include "host/session/ActiveData.h"

#include <QString>

class QMimeData;
class QWidget;

namespace korvana::desktop {

/// Reads a file and makes it the active data; selection and weights of the data before are forgotten. A file
/// that takes longer shows a busy sign with a Cancel button over the parent, and the program stays alive; not
/// to be called again before it answers. False when it was cancelled (the error is then empty) or could not
/// be read; the data before then stays.
bool openDataFile(ActiveData& data, const QString& path, QString* error, QWidget* parent = nullptr);

/// The filter of a file dialog that asks for data.
QString dataFileFilter();

/// The first local file of what is dragged over the window; empty without one.
QString droppedFile(const QMimeData* mime);

} // namespace korvana::desktop
