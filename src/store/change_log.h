#pragma once

#include "store/database.h"

namespace store {

// Creates the change-log tables of the open working year: each mirrors its table and adds the
// moment, the user and the operation word.
shell::Status YeniTabloEkle(Database &db);

// The operation words that writers hand to the log, and how the log screen shows them.
inline const QString LogYeniKayit = QStringLiteral("AddNew");
inline const QString LogDegisiklik = QStringLiteral("Edit");
inline const QString LogKayitSil = QStringLiteral("Delete");
QString LogIslemAdi(const QString &islemTuru);

} // namespace store
