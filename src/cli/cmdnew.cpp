// pagamenti-cli new --bank ABI/CAB [--due-from GG/MM/AAAA] [--due-to GG/MM/AAAA]
//     [--account-from CODICE] [--account-to CODICE] [--type 0-9] [--min IMPORTO]
//     [--max IMPORTO] [--currency CODICE] [--account-bank ABI/CAB] [--date GG/MM/AAAA]
//     [--value-date GG/MM/AAAA] [--customers]
#include "cmdnew.h"

#include "commandargs.h"
#include "commandcontext.h"
#include "distintasession.h"

#include "archives/store/recordmanagerfactory.h"
#include "editor/selection/duitemloader.h"
#include "editor/selection/selectionlogic.h"
#include "editor/window/distintaeditor.h"
#include "editor/window/mainwindowload.h"
#include "lists/usersettings.h"

namespace pg::cli {

namespace {

using editor::SelectionLogic;

// The command line has no window: its session handle is a number of its own.
constexpr qint32 CliSession = 1;

class NoPrinters : public editor::PrinterCatalog
{
public:
    QList<editor::PrinterInfo> installedPrinters() const override { return {}; }
    std::optional<editor::PrinterInfo> defaultPrinter() const override { return std::nullopt; }
};

// The main window as the distinta editor sees it, without a window: the selection already
// confirmed from the options, the walk over the due items without a progress window, and
// nothing to show. A walk stopped by an archive that cannot be read adds nothing: there is no
// clerk to judge a partial selection.
class CommandLineView : public editor::DistintaView
{
public:
    explicit CommandLineView(archives::ErpSession &erp) : m_erp(erp) {}

    void setManagementButton(int, bool) override {}
    void BindControls() override {}
    void PulisciMaschera() override {}
    void setAggiungiEnabled(bool) override {}
    void showTotals() override {}
    QString dateBoxText(editor::DateBox) const override
    {
        return editor::SelectionValues::EmptyDate;
    }
    void setDateBoxText(editor::DateBox, const QString &) override {}
    void focusDateBox(editor::DateBox, bool) override {}
    void focusHeaderField(int) override {}
    void LoadRows() override {}
    QStringList selectedRowKeys() const override { return {}; }
    void deselectRows() override {}
    bool hasListColumn(const QString &) const override { return true; }
    int listRowCount() const override { return 0; }
    QString currentRowKey() const override { return {}; }
    std::optional<editor::SelectionResult> showSelectionDialog() override
    {
        return editor::selectionValues().selectionResult();
    }
    void addSelectedDueItems(distinta::Distinta &d) override
    {
        editor::DueItemLoader loader(
            m_erp, editor::selectionValues(), currentSettings().desPag,
            editor::DueItemCausali::load(editor::DueItemCausali::defaultPath()));
        loader.setOnReadError(editor::DueItemLoader::OnReadError::Refuse);
        m_readFailed = loader.cmdGenera_Click(d).readError != 0;
    }
    // Whether the walk stopped at a read that failed.
    bool readFailed() const { return m_readFailed; }
    std::optional<QString> chooseDistinta() override { return std::nullopt; }
    QString lookupBanksAndAgencies() override { return {}; }
    void showDueItemDetail(const archives::ErpRecord &) override {}
    void showAccountDetail(const QString &, const QString &, const QString &) override {}

private:
    archives::ErpSession &m_erp;
    bool m_readFailed = false;
};

// "ABI/CAB" into the two boxes of a bank and its agency.
void setBank(SelectionLogic &logic, SelectionLogic::Box bank, SelectionLogic::Box agency,
             const QString &value)
{
    logic.setText(bank, value.section(u'/', 0, 0).trimmed());
    logic.setText(agency, value.section(u'/', 1).trimmed());
}

} // namespace

int runNew(CommandContext &context)
{
    CommandArgs args;
    QString error;
    const QStringList valueOptions{QStringLiteral("--bank"),       QStringLiteral("--due-from"),
                                   QStringLiteral("--due-to"),     QStringLiteral("--account-from"),
                                   QStringLiteral("--account-to"), QStringLiteral("--type"),
                                   QStringLiteral("--min"),        QStringLiteral("--max"),
                                   QStringLiteral("--currency"),   QStringLiteral("--account-bank"),
                                   QStringLiteral("--date"),       QStringLiteral("--value-date")};
    if (!args.parse(context.arguments(), valueOptions, {QStringLiteral("--customers")}, &error))
        return context.usageError(error);
    if (!args.positional().isEmpty())
        return context.usageError(
            QStringLiteral("Argomento inatteso: %1").arg(args.positional().first()));
    qint64 type = SelectionLogic::TuttiIPagamentiIndex;
    qint64 account = 0;
    // Account codes are the suite's six digits.
    if (!args.number(QStringLiteral("--type"), 0, 9, &type, &error) ||
        !args.number(QStringLiteral("--account-from"), 0, 999999, &account, &error) ||
        !args.number(QStringLiteral("--account-to"), 0, 999999, &account, &error))
        return context.usageError(error);
    for (const QString &option : {QStringLiteral("--min"), QStringLiteral("--max")}) {
        double amount = 0;
        if (args.has(option) && !SelectionLogic::readAmount(args.value(option), &amount))
            return context.usageError(
                QStringLiteral("Valore non valido per %1: \"%2\" (serve un importo da 0 a %3).")
                    .arg(option, args.value(option))
                    .arg(qint64(editor::SelectionValues::MaxImporto)));
    }

    pGetSettings();
    if (!DistintaSession::prepareLocalDatabase())
        return ExitFailure;
    NoPrinters printers;
    editor::MainWindowLoad load([] { return archives::createRecordManager(); }, printers);
    if (load.Load(CliSession) != editor::MainWindowLoad::Outcome::Ready)
        return ExitFailure;
    archives::ErpSession &erp = *load.erp();

    // The boxes of the selection dialog, filled and left one by one as the clerk would.
    SelectionLogic logic(&erp);
    QList<SelectionLogic::Box> left;
    auto fill = [&](const char *option, SelectionLogic::Box box) {
        const QString name = QString::fromLatin1(option);
        if (!args.has(name))
            return;
        logic.setText(box, args.value(name));
        left << box;
    };
    if (args.has(QStringLiteral("--customers")))
        logic.setCliForIndex(1);
    if (args.has(QStringLiteral("--bank"))) {
        setBank(logic, SelectionLogic::Banca, SelectionLogic::Agenzia,
                args.value(QStringLiteral("--bank")));
        left << SelectionLogic::Agenzia;
    }
    fill("--due-from", SelectionLogic::DataScadDa);
    fill("--due-to", SelectionLogic::DataScadA);
    fill("--date", SelectionLogic::DataCreazione);
    fill("--value-date", SelectionLogic::DataValuta);
    fill("--currency", SelectionLogic::CodValuta);
    logic.setTipoIndex(int(type));
    fill("--min", SelectionLogic::ImpMinimo);
    fill("--max", SelectionLogic::ImpMassimo);
    fill("--account-from", SelectionLogic::CodAnagraInizio);
    fill("--account-to", SelectionLogic::CodAnagraFine);
    if (args.has(QStringLiteral("--account-bank"))) {
        setBank(logic, SelectionLogic::BancaCli, SelectionLogic::AgenziaCli,
                args.value(QStringLiteral("--account-bank")));
        left << SelectionLogic::AgenziaCli;
    }
    for (SelectionLogic::Box box : std::as_const(left))
        if (!logic.validate(box))
            return ExitFailure;
    if (!logic.cmdGenera())
        return ExitFailure;

    // "Nuova distinta" with the confirmed selection, then the save.
    CommandLineView view(erp);
    editor::DistintaEditor editor(*load.store(), &erp, view);
    if (!editor.btnGestione_ClickED(editor::DistintaEditor::Nuova) || !editor.hasDistinta() ||
        view.readFailed())
        return ExitFailure;
    if (!load.store()->Salva(editor.distinta(), false, false))
        return ExitFailure;
    context.out() << editor.distinta().header().cod_distinta.trimmed() << '\n';
    return ExitSuccess;
}

} // namespace pg::cli
