#include "listcolumns.h"

#include "lists/usersettings.h"

namespace pg::editor {

namespace {

ListColumn column(const char *field, const QString &header, qint16 width, bool right, bool visible)
{
    ListColumn c;
    c.field = QString::fromLatin1(field);
    c.header = header;
    c.width = width;
    c.alignment = right ? ListColumn::Alignment::Right : ListColumn::Alignment::Left;
    c.visible = visible;
    c.accountLookup = c.field == u"Piva" || c.field == u"ragsoc";
    return c;
}

} // namespace

const QList<ListColumn> &LV_ConfigLista()
{
    constexpr bool L = false;
    constexpr bool R = true;
    static const QList<ListColumn> table{
        column("des_num_doc", QStringLiteral("N. Doc."), 500, L, true),
        column("dat_data_doc", QStringLiteral("Data Doc."), 1250, L, true),
        column("des_num_prot", QStringLiteral("N. Prot."), 0, L, true),
        column("des_num_rata", QStringLiteral("N. Rata"), 0, L, true),
        column("dat_data_scad", QStringLiteral("Data Scad."), 0, L, true),
        column("des_num_effetto", QStringLiteral("N.eff."), 0, L, true),
        column("cod_tipo_pag", QStringLiteral("Pag."), 0, L, true),
        column("flg_ind_clifor", QStringLiteral("C/F"), 0, L, false),
        column("cod_clifor", QStringLiteral("Codice"), 0, L, true),
        column("Piva", QStringLiteral("P.Iva"), 0, L, false),
        column("ragsoc", QStringLiteral("Ragione Sociale"), 0, L, true),
        column("cod_valuta", QStringLiteral("Val."), 100, L, false),
        column("val_imp_indist_val", QStringLiteral("In distinta (VAL)"), 0, R, true),
        column("val_imp_indist_eur", QStringLiteral("In distinta (EUR)"), 0, R, false),
        column("val_imp_dapag_val", QStringLiteral("Da Pagare (VAL)"), 0, R, false),
        column("val_imp_dapag_eur", QStringLiteral("Da Pagare (EUR)"), 0, R, false),
        column("val_imp_pag_val", QStringLiteral("Pagato (VAL)"), 0, R, false),
        column("val_imp_pag_eur", QStringLiteral("Pagato (EUR)"), 0, R, false),
        column("val_imp_residuo_val", QStringLiteral("Imp. Residuo (VAL)"), 0, R, true),
        column("val_imp_residuo_eur", QStringLiteral("Imp. Residuo (EUR)"), 0, R, true),
        column("val_cambio", QStringLiteral("Cambio"), 0, R, false),
        column("des_scadenza", QStringLiteral("Descrizione Scadenza"), 0, L, true),
    };
    return table;
}

QList<ListColumn> configuredColumns(const UserSettings &settings)
{
    QList<ListColumn> columns = LV_ConfigLista();
    for (ListColumn &c : columns) {
        const auto it = settings.columns.constFind(c.header);
        if (it != settings.columns.cend())
            c.visible = it.value();
    }
    return columns;
}

int twipsToPixels(int twips)
{
    return (twips + 7) / 15;
}

} // namespace pg::editor
