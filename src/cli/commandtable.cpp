#include "commandtable.h"

#include "cmdcbi.h"
#include "cmdcheck.h"
#include "cmdnew.h"
#include "cmdprint.h"
#include "cmdriba.h"
#include "commands.h"

namespace pg::cli {

const QList<Command> &commandTable()
{
    static const QList<Command> table{
        {QStringLiteral("demo"),
         QStringLiteral("CARTELLA [--company CODICE] [--due-items N] [--seed S] "
                        "[--today GG/MM/AAAA] [--empty]"),
         QStringLiteral("crea un'installazione dimostrativa completa in CARTELLA (nuova o vuota):\n"
                        "azienda DEMO, 300 scadenze, seme 1, scadenze intorno a oggi;\n"
                        "--empty crea gli archivi senza record"),
         false, runDemo},
        {QStringLiteral("archive"), QStringLiteral("dump NUMERO [--key K] | load FILE"),
         QStringLiteral("dump scrive i record di un archivio come testo, nell'ordine della\n"
                        "chiave (1 se non indicata); load carica i record di un file di testo\n"
                        "(tutti o nessuno)"),
         true, runArchive},
        {QStringLiteral("list"), QString(),
         QStringLiteral("elenca le distinte salvate: numero, data, banca di presentazione,\n"
                        "importo, stato e numero di disposizioni"),
         true, runList},
        {QStringLiteral("show"), QStringLiteral("N"),
         QStringLiteral("mostra la testata e le righe della distinta N"), true, runShow},
        {QStringLiteral("delete"), QStringLiteral("N"),
         QStringLiteral("elimina la distinta N (chiede conferma: --yes per rispondere Sì) e\n"
                        "libera le sue scadenze negli archivi di [orvida]"),
         true, runDelete},
        {QStringLiteral("new"),
         QStringLiteral("--bank ABI/CAB [OPZIONI DI SELEZIONE] [--customers]"),
         QStringLiteral(
             "crea e salva una distinta con le scadenze scelte come nella finestra di\n"
             "selezione e ne scrive il numero; opzioni: --due-from e --due-to GG/MM/AAAA,\n"
             "--account-from e --account-to CODICE, --type 0-9, --min e --max IMPORTO,\n"
             "--currency CODICE, --account-bank ABI/CAB, --date e --value-date\n"
             "GG/MM/AAAA; --customers per una distinta clienti"),
         true, runNew},
        {QStringLiteral("cbi"), QStringLiteral("N [--format xml|flat] [--cuc CODICE] [--out FILE]"),
         QStringLiteral("scrive il file CBI dei bonifici della distinta fornitori N e la segna\n"
                        "presentata in banca: il file a record fissi (D_STM/CBI_N.txt) senza\n"
                        "--format o con --format flat, il messaggio XML SEPA (D_STM/CBI_N.xml)\n"
                        "con --format xml, con il codice CUC delle opzioni, dell'azienda o di\n"
                        "--cuc; --out FILE per scriverlo altrove"),
         true, runCbi},
        {QStringLiteral("riba"), QStringLiteral("N [--out FILE] [--raggruppa]"),
         QStringLiteral("scrive il file CBI delle ricevute bancarie (RiBa) della distinta\n"
                        "clienti N (D_STM/RIBA_N.txt, o --out FILE) e la segna presentata in\n"
                        "banca; --raggruppa riunisce in una ricevuta le scadenze dello stesso\n"
                        "cliente con la stessa data di scadenza"),
         true, runRiba},
        {QStringLiteral("check"), QStringLiteral("N"),
         QStringLiteral(
             "controlla la completezza dei dati bancari della distinta N, scrive il\n"
             "rapporto controllo.txt e ne stampa il percorso; esce con 1 se ci sono errori"),
         true, runCheck},
        {QStringLiteral("print"),
         QStringLiteral("N --pdf FILE [--final] [--grouped] [--totals] [--date GG/MM/AAAA] "
                        "[--template NOME]"),
         QStringLiteral("stampa la distinta N nel file PDF FILE come la finestra di stampa: di\n"
                        "prova, o definitiva con --final (la distinta passa a \"D\"); --grouped\n"
                        "scadenze raggruppate, --totals riga dei totali, --date data di\n"
                        "presentazione, --template un modello diverso da \"Distinta\""),
         true, runPrint},
        {QStringLiteral("verifica"), QStringLiteral("[--ripara]"),
         QStringLiteral("confronta le scadenze segnate in distinta negli archivi di [orvida] con\n"
                        "le righe delle distinte salvate ed elenca ogni differenza (anche nel\n"
                        "rapporto verifica.txt); esce con 1 se ce ne sono. --ripara corregge le\n"
                        "scadenze come dicono le distinte"),
         true, runVerifica},
        {QStringLiteral("db"), QStringLiteral("migra --verso SERVIZIO"),
         QStringLiteral("copia il database dell'azienda (il file Pagame.db) in un database vuoto\n"
                        "di un server PostgreSQL, indicato dal servizio SERVIZIO di\n"
                        "pg_service.conf, e verifica righe e totali; il file resta com'è"),
         true, runDb},
        {QStringLiteral("installa"), QStringLiteral("[CARTELLA]"),
         QStringLiteral("mette i file del programma in un'installazione di [orvida]: il file\n"
                        "QXARTRAC.DAT e un esempio di causali.ini (se manca) nella cartella exe,\n"
                        "i modelli di stampa mancanti in D_IMG; CARTELLA è la cartella di\n"
                        "[orvida] (senza, la \"Dir orvida\" di ORVIDA.INI)"),
         false, runInstalla},
    };
    return table;
}

const Command *findCommand(const QString &name)
{
    for (const Command &command : commandTable())
        if (command.name == name)
            return &command;
    return nullptr;
}

namespace {

QString indented(const QString &text, int blanks)
{
    QString out;
    for (const QString &line : text.split(u'\n'))
        out += QString(blanks, u' ') + line + u'\n';
    return out;
}

} // namespace

QString usageText(const Command &command)
{
    return QStringLiteral("Uso: pagamenti-cli [--yes] %1 %2\n").arg(command.name, command.usage) +
           indented(command.description, 2);
}

QString usageText()
{
    QString text = QStringLiteral("Uso: pagamenti-cli [--yes] COMANDO [ARGOMENTI...]\n"
                                  "\n"
                                  "Comandi:\n");
    for (const Command &command : commandTable())
        text += QStringLiteral("  %1 %2\n").arg(command.name, command.usage) +
                indented(command.description, 6);
    text += QStringLiteral(
        "\n"
        "Opzioni:\n"
        "  --yes     risponde Sì (o OK) alle domande del programma; senza, risponde No\n"
        "  --help    mostra questo aiuto (dopo un comando, l'aiuto del comando)\n"
        "\n"
        "I comandi diversi da demo lavorano sull'azienda corrente di [orvida], letta da\n"
        "ORVIDA.INI nella cartella indicata dalla variabile ORVIDA_INI_DIR.\n"
        "Codici di uscita: 0 riuscito, 1 non riuscito, 2 uso errato.\n");
    return text;
}

} // namespace pg::cli
