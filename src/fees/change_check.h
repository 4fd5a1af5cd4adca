#pragma once

#include "base/result.h"

namespace store {
class Database;
}

namespace fees {

// Whether a student's fee may still be replaced or planned anew ("AidatDegisiklikKontrol"),
// asked before the automatic planning and the fee window of a student's account:
// - no school row, or no student chosen: no;
// - a spent placeholder line (debt above 0, nothing left, named "Aidat Tanımı", no fee) is
//   first set to zero debt and zero left, where the user may write;
// - no account of that fee: yes;
// - an account with any payment (Borc differs from Kalan): never, whatever the school says;
// - an untouched account: only in a school that has set OgrAOtoDeg.
// A "no" is a refusal under the title "Aidat Değişikliği" ("Öğrenci Hata" for a missing
// student), which the screen shows.
base::Status AidatDegisiklikKontrol(store::Database &db, qint64 aidatId, qint64 ogrKayitId);

} // namespace fees
