#include "office.h"

#include "maintenance/school.h"
#include "maintenance/working_years.h"
#include "store/database.h"
#include "store/migration.h"
#include "users/login.h"
#include "users/session.h"

#include <QDebug>

using namespace Qt::StringLiterals;

namespace testing {

bool openOffice(store::Database &db, const QString &user, const QString &password,
                const QString &cariAy)
{
    if (const base::Status s = users::KullaniciKaydet(db, user, password); !s) {
        qWarning() << s.error().text;
        return false;
    }
    const base::Result<int> id = maintenance::CalismaKaydet(db, u"Deneme"_s);
    if (!id) {
        qWarning() << id.error().text;
        return false;
    }
    maintenance::CalismaSecimiYap(db, maintenance::Calisma{*id, u"Deneme"_s}, 0);
    if (!store::DatabaseAc(db, store::Store::Year, true, true))
        return false;
    store::SonAlanlariEkle(db);
    maintenance::OkulBilgisi okul = maintenance::YeniOkulBilgisi(QDate(2025, 10, 1));
    okul.OkulAdi = u"Deneme Okulu"_s;
    okul.OgretimYili = u"2025-2026"_s;
    okul.CariAy = cariAy;
    if (const base::Status s = maintenance::OkulbilgisiKaydet(db, okul); !s) {
        qWarning() << s.error().text;
        return false;
    }
    if (!maintenance::SabitBilgileriOku(db))
        return false;
    users::durum().AktifKullanici = user;
    return true;
}

} // namespace testing
