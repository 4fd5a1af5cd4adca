#include "students/student_list.h"

#include "base/turkish_text.h"
#include "store/database.h"

namespace students {

base::Result<QList<ListeSatiri>> OgrenciYukle(store::Database &db, ListeSirasi tur,
                                              const QString &metin)
{
    const QString order = tur == ListeSirasi::Ad ? QStringLiteral("O.Ogr_Adi, O.Ogr_Soyadi")
                                                 : QStringLiteral("O.Ogr_Soyadi, O.Ogr_Adi");
    // The registry row is one a student; MAX only keeps a stray second one from doubling him.
    store::Query q(db,
                   QStringLiteral("SELECT O.KayitID, O.Ogr_Numarasi, O.Ogr_Adi, O.Ogr_Soyadi, "
                                  "O.Ogr_Sinif, (SELECT MAX(N.Ogr_MernisNo) FROM OgrenciNufus N "
                                  "WHERE N.KayitID = O.KayitID) AS TcNo FROM Ogrenci O "
                                  "ORDER BY %1, O.KayitID")
                       .arg(order));
    if (!q.exec()) {
        return q.error(QStringLiteral("FrmOgrenciList:OgrenciYukle"));
    }
    // The beginning is tested here rather than with LIKE, whose case rules differ between the
    // engines and know nothing of the Turkish dotted and dotless i.
    const QString prefix = base::BuyukHarf(metin.trimmed());
    QList<ListeSatiri> rows;
    while (q.next()) {
        ListeSatiri r{q.integer(0), q.integer(1), q.text(2), q.text(3), q.text(4), q.text(5)};
        if (!prefix.isEmpty() && !ListeAnahtari(r, tur).startsWith(prefix)) {
            continue;
        }
        rows.append(r);
    }
    return rows;
}

QString ListeAnahtari(const ListeSatiri &satir, ListeSirasi tur)
{
    return base::BuyukHarf(tur == ListeSirasi::Ad ? satir.adi : satir.soyadi);
}

int IlkEslesen(const QStringList &anahtarlar, const QString &metin)
{
    const QString prefix = base::BuyukHarf(metin.trimmed());
    for (int i = 0; i < anahtarlar.size(); ++i) {
        if (anahtarlar.at(i).startsWith(prefix)) {
            return i;
        }
    }
    return -1;
}

} // namespace students
