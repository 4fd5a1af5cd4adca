#pragma once

#include "store/database.h"
#include "store/schema.h"

namespace store {

// ---- catalogue helpers -------------------------------------------------------------------
// Each reads the catalogue of the store afresh; the migration keeps its own copy.

// True when the table has the field.
bool Field_Exist(Database &db, Store store, const QString &table, const QString &field);
// Appends the field; with a default value (SQL text) then sets every row to it. False when the
// field was already there or the engine refused it; neither is reported.
bool AddField_ToTable(Database &db, Store store, const QString &table, const schema::Field &field,
                      const QString &defaultValue = QString());
// Adds the field only when missing. True when it exists afterwards.
bool AlanYoksaEkle(Database &db, Store store, const QString &table, const schema::Field &field);
// True when the table is missing (the caller then creates it).
bool TabloYoksaEkle(Database &db, Store store, const QString &table);
// Makes the index when it is missing; a failure is ignored, so that a second run does nothing.
void IndeksEkle(Database &db, Store store, const QString &table, const schema::Index &index);
// Renames a field when it is found; failures are swallowed.
void AlanAdiDegistir(Database &db, Store store, const QString &table, const QString &from,
                     const QString &to);
// Changes a field's type in place, keeping its rows and its place in the table. Nothing is
// done when the field already has that type.
base::Status AlanDegistir(Database &db, Store store, const QString &table,
                          const schema::Field &field);

// ---- creation --------------------------------------------------------------------------------

// The global store's own tables, made when missing (settings, SMS, free lists).
base::Status createGlobalTables(Database &db);
// What opening the global store makes when missing: its own tables and the rights table. One
// reading of the catalogue when nothing is missing.
base::Status prepareGlobalStore(Database &db);
// A new working year at the model shape: the tables and fields that existed before anything
// was added to the product. DatabaseGuncelle brings it forward.
base::Status createModel(Database &db);
// Creates one declared table with the fields and indexes it is born with: the model's for a
// table of the model, the first ones for a table that a step of the migration makes.
base::Status createDeclaredTable(Database &db, const schema::Table &table);

// The rights table, made if missing with its five fields, in the global store and in a year.
base::Status HaklarTabloEkle(Database &db, Store store);
// The cash box and personnel tables with their keys, each only if missing.
base::Status KasaPersonelTabloEkle(Database &db);
// The running order of the discount definitions, by their key, carried into the students'
// discounts; then the free-form discount "Serbest İndirim" behind them.
base::Status IskontoSirasiDoldur(Database &db);

// ---- migration -----------------------------------------------------------------------------

// Brings the open working year to the current schema, in a fixed order of steps, each in its
// own transaction; every step is a no-op once done, so a second run changes nothing and a run
// that failed goes on from where it stopped. The transaction of the last step leaves the
// year's schema version in the store; a year that has it runs only the back-fills that every
// opening runs ("... WHERE f IS NULL"), without reading the catalogue, and writes nothing when
// they find nothing. A failure carries the notice "Database güncellemede hata!" under "HATA".
base::Status DatabaseGuncelle(Database &db);
// The schema version of a working year that has gone through every step: a number drawn from
// the year's declared tables (fields, types, sizes, indexes) and the steps, so that a change
// of the declaration or a new step makes the stores of the older shape run the steps again.
int yearSchemaVersion();
// The steps of DatabaseGuncelle, counted (for tests).
int migrationStepCount();
// For tests: make the step with this number fail once, as a broken file would.
void failMigrationStepForTest(int step);

// The three fields that the main window checks at every start, after the migration. The unit
// count is looked for under a name one letter short, so its add is tried every time and its
// failure ignored; the field keeps the name AidatBirimAdeti.
void SonAlanlariEkle(Database &db);

} // namespace store
