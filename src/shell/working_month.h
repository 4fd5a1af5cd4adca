#pragma once

#include <QDate>
#include <QList>
#include <QString>

namespace shell {

// One entry of the working-month selector: "EKİM - 2025" with 202510.
struct AyGirdisi
{
    QString metin;
    int veri = 0;
};

// The 48 months of the selector: four calendar years from January of the year before the
// school year's first year ("2025-2026" gives January 2024 to December 2027).
QList<AyGirdisi> CariAyListesi(const QString &ogretimYili);
// The school year to use when the school has set none: the working year's own, when its name
// reads as one ("2025-2026"); else this year and the next ("2026-2027").
QString VarsayilanOgretimYili(const QDate &bugun, const QString &calismaAdi = QString());
// Where the selector stands for a working month: its entry; when the month is empty or not in
// the list, the school year's first year with the present month; 0 when that is missing too.
int CariAySirasi(const QList<AyGirdisi> &liste, const QString &cariAy, const QString &ogretimYili,
                 const QDate &bugun);
// "Aktif Çalışma : ... Cari Ay : EKİM - 2025" as the background writes it.
QString CariAyMetni(const QString &cariAy);

} // namespace shell
