#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QString>

namespace store {
class Database;
}

namespace shell {

// The collection figures of the background, for the working month: what is due this month, what
// is left over from the months before, both together, and the number of students.
struct PanoBilgisi
{
    QString ayAdi;
    base::Para buAy;   // due in the working month, less what was paid in it
    base::Para gecmis; // due in the months before, less what was paid in them
    base::Para toplam; // to collect in the working month: both together
    qint64 ogrenciSayisi = 0;
};

// cariAy is "yyyyMM". Installments of every account of an existing student are summed by month
// up to the end of the working month; the payments of each such month are taken off it.
base::Result<PanoBilgisi> RaporHazirla(store::Database &db, const QString &cariAy);

} // namespace shell
