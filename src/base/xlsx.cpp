#include "base/xlsx.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <xlsxwriter.h>

namespace base {

namespace {

Error failed(const QString &why)
{
    return Error{0, QStringLiteral("Excel dosyası yazılamadı: %1").arg(why),
                 QStringLiteral("XlsxYaz")};
}

} // namespace

Status XlsxYaz(const QString &dosya, const QString &sayfa, const QStringList &basliklar,
               const QList<QStringList> &satirlar)
{
    // libxlsxwriter writes a path of its own; it goes to a temporary name in the same folder.
    const QString gecici = dosya + QStringLiteral(".yaziliyor");
    QFile::remove(gecici);
    lxw_workbook *kitap = workbook_new(QDir::toNativeSeparators(gecici).toUtf8().constData());
    if (!kitap) {
        return failed(QFileInfo(dosya).absolutePath());
    }
    lxw_worksheet *tablo = workbook_add_worksheet(kitap, sayfa.left(31).toUtf8().constData());
    lxw_format *kalin = workbook_add_format(kitap);
    format_set_bold(kalin);
    for (int c = 0; c < basliklar.size(); ++c) {
        worksheet_write_string(tablo, 0, lxw_col_t(c), basliklar.at(c).toUtf8().constData(), kalin);
    }
    for (int r = 0; r < satirlar.size(); ++r) {
        const QStringList &satir = satirlar.at(r);
        for (int c = 0; c < satir.size(); ++c) {
            if (satir.at(c).isEmpty()) {
                continue;
            }
            worksheet_write_string(tablo, lxw_row_t(r + 1), lxw_col_t(c),
                                   satir.at(c).toUtf8().constData(), nullptr);
        }
    }
    const lxw_error sonuc = workbook_close(kitap);
    if (sonuc != LXW_NO_ERROR) {
        QFile::remove(gecici);
        return failed(QString::fromUtf8(lxw_strerror(sonuc)));
    }
    QFile::remove(dosya);
    if (!QFile::rename(gecici, dosya)) {
        QFile::remove(gecici);
        return failed(dosya);
    }
    return {};
}

} // namespace base
