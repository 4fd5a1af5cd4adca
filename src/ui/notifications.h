#pragma once

#include <QObject>

namespace ui {

// How screens tell each other that something they show has changed, so that open screens
// reload it.
class Bildirimler : public QObject
{
    Q_OBJECT

public:
    static Bildirimler &instance();

signals:
    // The school's settings of the open year (the Sabit row) were saved or deleted.
    void sabitBilgileriDegisti();
    // A student's record, or his accounts, changed.
    void ogrenciDegisti(qint64 kayitId);
    void aidatDegisti(qint64 ogrKayitId);
    // Fee definitions changed.
    void aidatTanimlariDegisti();
};

} // namespace ui
