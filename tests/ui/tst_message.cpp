#include "gui_support.h"

#include "ui/message.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

// The real message box, as an operator meets it: which button Enter presses.
class tst_Message : public QObject
{
    Q_OBJECT

private slots:
    void enterAnswersTheSafeWay_data();
    void enterAnswersTheSafeWay();
};

void tst_Message::enterAnswersTheSafeWay_data()
{
    QTest::addColumn<bool>("losing");
    QTest::addColumn<QString>("defaultButton");
    QTest::addColumn<bool>("answer");
    QTest::addRow("silme-sorusu") << true << u"&Hayır"_s << false;
    QTest::addRow("siradan-soru") << false << u"&Evet"_s << true;
}

void tst_Message::enterAnswersTheSafeWay()
{
    QFETCH(bool, losing);
    QFETCH(QString, defaultButton);
    QFETCH(bool, answer);
    QString seen;
    testing::ModalDriver driver;
    driver.then([&seen](QWidget *dialog) {
        auto *box = qobject_cast<QMessageBox *>(dialog);
        QVERIFY(box);
        seen = box->defaultButton() ? box->defaultButton()->text() : QString();
        QTest::keyClick(box, Qt::Key_Return);
    });
    const QString text = u"Öğrenim aidat tanımını silmek istiyor musunuz?"_s;
    const bool yes
        = losing ? ui::askBeforeLosing(u"Uyarı"_s, text) : ui::askYesNo(u"Uyarı"_s, text);
    QCOMPARE(seen, defaultButton);
    QCOMPARE(yes, answer);
    QCOMPARE(driver.remaining(), 0);
}

QTEST_MAIN(tst_Message)
#include "tst_message.moc"
