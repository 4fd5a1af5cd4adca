#include "shell/dashboard.h"

#include "base/turkish_text.h"
#include "store/database.h"

#include <QDate>
#include <QHash>

namespace shell {

base::Result<PanoBilgisi> RaporHazirla(store::Database &db, const QString &cariAy)
{
    const QString label = QStringLiteral("FrmBackGround:RaporHazirla");
    PanoBilgisi pano;
    const int year = cariAy.left(4).toInt();
    const int month = cariAy.right(2).toInt();
    pano.ayAdi = base::AyAdi(month);
    // The main window has said all there is to say about a year that does not open.
    const store::Operation op(db, store::Store::Year, label, store::Operation::Notice::Quiet);
    if (!op)
        return op.error();

    store::Query count(db, QStringLiteral("SELECT count(KayitID) AS TOPLAMOGRENCI FROM Ogrenci"));
    if (!count.exec() || !count.next())
        return count.error(label);
    pano.ogrenciSayisi = count.integer(0);
    count.finish();

    const QDate first(year, month, 1);
    if (!first.isValid())
        return pano;
    const QDate limit = base::AyEkle(first, 1);
    // The accounts of students that still exist.
    const QString accounts = QStringLiteral("SELECT OT.KayitID FROM OgrenciAidatTanim OT "
                                            "JOIN Ogrenci O ON O.KayitID = OT.OgrKayitID");
    QHash<int, base::Para> paid; // by year * 100 + month
    {
        store::Query q(db,
                       QStringLiteral("SELECT year(P.OdemeTarihi), month(P.OdemeTarihi), sum(P.Odenen) "
                                      "FROM OgrenciAidatOdeme P WHERE P.OdemeTarihi < ? AND "
                                      "P.KayitID IN (%1) GROUP BY year(P.OdemeTarihi), "
                                      "month(P.OdemeTarihi)")
                           .arg(accounts));
        q.bind(limit);
        if (!q.exec())
            return q.error(label);
        while (q.next())
            paid.insert(int(q.integer(0) * 100 + q.integer(1)), q.para(2));
    }
    store::Query due(db,
                     QStringLiteral("SELECT year(D.OdemeTarihi), month(D.OdemeTarihi), sum(D.Odenecek) "
                                    "FROM OgrenciAidatDetay D WHERE D.OdemeTarihi < ? AND D.KayitID IN "
                                    "(%1) GROUP BY year(D.OdemeTarihi), month(D.OdemeTarihi) "
                                    "ORDER BY year(D.OdemeTarihi), month(D.OdemeTarihi)")
                         .arg(accounts));
    due.bind(limit);
    if (!due.exec())
        return due.error(label);
    const int current = year * 100 + month;
    while (due.next()) {
        const int key = int(due.integer(0) * 100 + due.integer(1));
        const base::Para rest = due.para(2) - paid.value(key);
        if (key < current)
            pano.gecmis += rest;
        else if (key == current)
            pano.buAy = rest;
    }
    pano.toplam = pano.gecmis + pano.buAy;
    return pano;
}

} // namespace shell
