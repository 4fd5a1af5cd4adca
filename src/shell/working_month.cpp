#include "shell/working_month.h"

#include "base/turkish_text.h"
#include "maintenance/school.h"

namespace shell {

QList<AyGirdisi> CariAyListesi(const QString &ogretimYili)
{
    const int base = ogretimYili.left(4).toInt();
    QList<AyGirdisi> list;
    for (int i = 1; i <= 48; ++i) {
        const int month = (i - 1) % 12 + 1;
        const int year = base - 1 + (i - 1) / 12;
        list.append(AyGirdisi{base::AyAdi(month) + QStringLiteral(" - ") + QString::number(year),
                              year * 100 + month});
    }
    return list;
}

QString VarsayilanOgretimYili(const QDate &bugun, const QString &calismaAdi)
{
    const int first = maintenance::OkulYiliBasi(calismaAdi).value_or(bugun.year());
    return QStringLiteral("%1-%2").arg(first).arg(first + 1);
}

int CariAySirasi(const QList<AyGirdisi> &liste, const QString &cariAy, const QString &ogretimYili,
                 const QDate &bugun)
{
    auto find = [&liste](const QString &value) {
        bool ok = false;
        const int wanted = value.toInt(&ok);
        for (int i = 0; ok && i < liste.size(); ++i) {
            if (liste[i].veri == wanted)
                return i;
        }
        return -1;
    };
    const QString fallback
        = ogretimYili.left(4) + QStringLiteral("%1").arg(bugun.month(), 2, 10, QLatin1Char('0'));
    int index = find(cariAy.trimmed().isEmpty() ? fallback : cariAy.trimmed());
    if (index < 0)
        index = find(fallback);
    return index < 0 ? 0 : index;
}

QString CariAyMetni(const QString &cariAy)
{
    if (cariAy.size() < 6)
        return QString();
    return base::AyAdi(cariAy.right(2).toInt()) + QStringLiteral(" - ") + cariAy.left(4);
}

} // namespace shell
