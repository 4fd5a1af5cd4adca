#pragma once

#include "base/result.h"

#include <QList>
#include <QString>
#include <QStringList>

// A table written as an Excel workbook (.xlsx): one sheet, the heads in bold on the first row,
// then the rows as text. The file is written beside its final name and moved over it only when
// whole, so that a failure leaves no half-written workbook.
namespace base {

Status XlsxYaz(const QString &dosya, const QString &sayfa, const QStringList &basliklar,
               const QList<QStringList> &satirlar);

} // namespace base
