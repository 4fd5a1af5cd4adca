#pragma once

#include "store/database.h"

namespace bench {

// The shape of a generated working year. Every fee has `installments` monthly installments
// (Sira 1..n) from September 2025 on the first of the month; the first `paid` of them are paid
// on their day. With `downPayment` each fee also has its planned down payment (the installment
// row with Sira 0) and the down payment paid (the payment row with Sira 0), as the account
// screen writes them. Headers carry Borc, Kalan and Surum as a save leaves them.
struct Shape
{
    int students = 10000;
    int fees = 2;
    bool downPayment = false;
    int installments = 10;
    int paid = 5;
    int moneyScale = 0; // the YTLCevrim of every row; a save stamps the school's ParaTuru
};

// Fills the open, migrated working year. False when a statement failed.
bool generate(store::Database &db, const Shape &shape);

// Students with two fees of ten 1.000 TL installments each and no down payment; for each fee
// the first `payments` installments are paid (at most ten).
bool generate(store::Database &db, int students, int payments = 5);

} // namespace bench
