#include "gui_support.h"

#include "ui/inputs.h"

#include <QApplication>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

// A money box says no to what is not an amount, and to a negative one where it makes no
// sense, when the operator leaves it: a message, the focus back in the box, the text kept for
// mending.
class tst_Inputs : public QObject
{
    Q_OBJECT

private slots:
    void aMoneyBoxSaysNo_data();
    void aMoneyBoxSaysNo();
};

void tst_Inputs::aMoneyBoxSaysNo_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("negativeAllowed");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("shown");
    // clang-format off
    QTest::addRow("harf") << "abc" << true << "\"abc\" bir tutar değil. Tutarı rakamla, 1.250,50 biçiminde giriniz." << "abc";
    QTest::addRow("sayi-harf") << "12a" << true << "\"12a\" bir tutar değil. Tutarı rakamla, 1.250,50 biçiminde giriniz." << "12a";
    QTest::addRow("eksi-pesinat") << "-5.000" << false << "Bu alana eksi bir tutar girilemez." << "-5.000";
    QTest::addRow("eksi-serbest") << "-5.000" << true << "" << "-5.000,00";
    QTest::addRow("tutar") << "1250,5" << false << "" << "1.250,50";
    QTest::addRow("bos") << "" << false << "" << "";
    QTest::addRow("tasan") << "99999999999999999999" << true << "Tutar çok büyük: hesap sınırı aşıldı." << "99999999999999999999";
    // clang-format on
}

void tst_Inputs::aMoneyBoxSaysNo()
{
    QFETCH(QString, typed);
    QFETCH(bool, negativeAllowed);
    QFETCH(QString, message);
    QFETCH(QString, shown);
    testing::MessageRecorder messages;
    QWidget form;
    auto *layout = new QVBoxLayout(&form);
    auto *money = new ui::MoneyEdit(&form);
    auto *next = new QLineEdit(&form);
    layout->addWidget(money);
    layout->addWidget(next);
    money->setNegativeAllowed(negativeAllowed);
    form.show();
    QApplication::setActiveWindow(&form);
    money->setFocus(Qt::TabFocusReason);
    testing::typeText(money, typed);
    QTest::keyClick(money, Qt::Key_Tab);
    QCOMPARE(messages.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(QApplication::focusWidget(),
             message.isEmpty() ? static_cast<QWidget *>(next) : static_cast<QWidget *>(money));
    QCOMPARE(money->text(), shown);
    QCOMPARE(money->isAcceptable(), message.isEmpty());
}

QTEST_MAIN(tst_Inputs)
#include "tst_inputs.moc"
