#include "gui_support.h"

#include "ui/message.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

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
    QTest::addRow("silme-sorusu") << true << QStringLiteral("&Hayır") << false;
    QTest::addRow("siradan-soru") << false << QStringLiteral("&Evet") << true;
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
    const QString text = QStringLiteral("Öğrenim aidat tanımını silmek istiyor musunuz?");
    const bool yes = losing ? ui::askBeforeLosing(QStringLiteral("Uyarı"), text)
                            : ui::askYesNo(QStringLiteral("Uyarı"), text);
    QCOMPARE(seen, defaultButton);
    QCOMPARE(yes, answer);
    QCOMPARE(driver.remaining(), 0);
}

QTEST_MAIN(tst_Message)
#include "tst_message.moc"
