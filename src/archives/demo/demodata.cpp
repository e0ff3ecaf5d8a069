#include "demodata.h"

#include <array>

namespace pg::archives::demodata {

namespace {

// Index of each town, as the agencies refer to them.
enum : int {
    Milano,
    Roma,
    Torino,
    Napoli,
    Bologna,
    Firenze,
    Forli,
    Cantu,
    Mondovi,
    Cefalu,
    Paterno,
    Nardo,
    Genova,
    Venezia,
    Bari,
    Palermo,
    Verona,
    Cirie,
    Zane,
    SantAgata,
    Reggio,
    Cagliari,
};

constexpr City Cities[] = {
    {u"Milano", u"MI", u"20121", u"F205", u"016"},
    {u"Roma", u"RM", u"00184", u"H501", u"032"},
    {u"Torino", u"TO", u"10121", u"L219", u"010"},
    {u"Napoli", u"NA", u"80133", u"F839", u"034"},
    {u"Bologna", u"BO", u"40121", u"A944", u"024"},
    {u"Firenze", u"FI", u"50122", u"D612", u"028"},
    {u"Forlì", u"FC", u"47121", u"D704", u"132"},
    {u"Cantù", u"CO", u"22063", u"B639", u"510"},
    {u"Mondovì", u"CN", u"12084", u"F351", u"466"},
    {u"Cefalù", u"PA", u"90015", u"C421", u"433"},
    {u"Paternò", u"CT", u"95047", u"G371", u"841"},
    {u"Nardò", u"LE", u"73048", u"F842", u"797"},
    {u"Genova", u"GE", u"16121", u"D969", u"014"},
    {u"Venezia", u"VE", u"30124", u"L736", u"020"},
    {u"Bari", u"BA", u"70122", u"A662", u"040"},
    {u"Palermo", u"PA", u"90133", u"G273", u"046"},
    {u"Verona", u"VR", u"37121", u"L781", u"117"},
    {u"Ciriè", u"TO", u"10073", u"C722", u"304"},
    {u"Zanè", u"VI", u"36010", u"M145", u"608"},
    {u"Sant'Agata di Militello", u"ME", u"98076", u"I199", u"822"},
    {u"Reggio nell'Emilia", u"RE", u"42121", u"H223", u"128"},
    {u"Cagliari", u"CA", u"09124", u"B354", u"048"},
};

constexpr const char16_t *Streets[] = {
    u"Via Giuseppe Garibaldi",
    u"Corso Vittorio Emanuele II",
    u"Viale della Libertà",
    u"Via dell'Università",
    u"Piazza del Duomo",
    u"Via Niccolò Machiavelli",
    u"Via San Francesco d'Assisi",
    u"Largo Cairoli",
    u"Via Cesare Battisti",
    u"Via Nazionale",
    u"Via Roma",
    u"Corso Italia",
    u"Via dei Mille",
    u"Via Nino Bixio",
    u"Piazza Cavour",
    u"Via Fratelli Cervi",
    u"Viale Europa",
    u"Via Galileo Galilei",
    u"Via Caduti sul Lavoro",
    u"Strada Provinciale 34",
    u"Via Sant'Antonio Abate",
    u"Piazzale della Vittoria",
    u"Via Città di Cascia",
    u"Via Ludovico Ariosto",
};

constexpr Agency Intesa[] = {
    {u"Milano - Sede", Milano, u"00", u"Piazza della Scala, 6"},
    {u"Forlì - Corso della Repubblica", Forli, u"01", u"Corso della Repubblica, 14"},
    {u"Napoli - Via Toledo", Napoli, u"05", u"Via Toledo, 177"},
    {u"Zanè", Zane, u"00", u"Via Trento Trieste, 20"},
};
constexpr Agency Unicredit[] = {
    {u"Roma - Via del Corso", Roma, u"02", u"Via del Corso, 307"},
    {u"Torino - Via XX Settembre", Torino, u"01", u"Via XX Settembre, 31"},
    {u"Ciriè", Cirie, u"00", u"Via Vittorio Emanuele II, 90"},
};
constexpr Agency BancoBpm[] = {
    {u"Verona - Sede", Verona, u"11", u"Piazza Nogara, 2"},
    {u"Cantù", Cantu, u"20", u"Via Matteotti, 19"},
    {u"Milano - Ag. 12", Milano, u"12", u"Corso Buenos Aires, 54"},
};
constexpr Agency Mps[] = {
    {u"Firenze - Via dei Pecori", Firenze, u"10", u"Via dei Pecori, 6"},
    {u"Bari - Via Sparano", Bari, u"02", u"Via Sparano, 72"},
};
constexpr Agency Bper[] = {
    {u"Bologna - Via Rizzoli", Bologna, u"02", u"Via Rizzoli, 8"},
    {u"Forlì - Viale Vittorio Veneto", Forli, u"03", u"Viale Vittorio Veneto, 1"},
    {u"Cagliari - Viale Bonaria", Cagliari, u"03", u"Viale Bonaria, 33"},
};
constexpr Agency CreditAgricole[] = {
    {u"Forlì - Piazza Saffi", Forli, u"00", u"Piazza Aurelio Saffi, 29"},
    {u"Genova - Via XX Settembre", Genova, u"06", u"Via XX Settembre, 41"},
};
constexpr Agency Sondrio[] = {
    {u"Milano - Ag. 3", Milano, u"03", u"Via Santa Maria Fulcorina, 1"},
    {u"Mondovì", Mondovi, u"00", u"Piazza Ellero, 10"},
};
constexpr Agency Bcc[] = {
    {u"Forlì - Viale Roma", Forli, u"40", u"Viale Roma, 40"},
};
constexpr Agency Bnl[] = {
    {u"Roma - Via Veneto", Roma, u"00", u"Via Vittorio Veneto, 119"},
    {u"Palermo - Via Roma", Palermo, u"01", u"Via Roma, 291"},
    {u"Venezia - San Marco", Venezia, u"00", u"Campo San Luca, 4516"},
};
constexpr Agency Credem[] = {
    {u"Reggio nell'Emilia - Sede", Reggio, u"01", u"Via Emilia San Pietro, 4"},
    {u"Torino - Corso Re Umberto", Torino, u"02", u"Corso Re Umberto, 10"},
};
constexpr Agency SantAngelo[] = {
    {u"Cefalù", Cefalu, u"00", u"Via Roma, 12"},
    {u"Paternò", Paterno, u"00", u"Piazza Umberto I, 5"},
    {u"Sant'Agata di Militello", SantAgata, u"00", u"Via Medici, 150"},
};
constexpr Agency Pugliese[] = {
    {u"Nardò", Nardo, u"00", u"Piazza Salandra, 1"},
    {u"Bari - Via Calefati", Bari, u"10", u"Via Calefati, 44"},
};

const Bank Banks[] = {
    {u"03069", u"Intesa Sanpaolo", u"BCITITMM", Intesa},
    {u"02008", u"UniCredit", u"UNCRITMM", Unicredit},
    {u"05034", u"Banco BPM", u"BAPPIT21", BancoBpm},
    {u"01030", u"Banca Monte dei Paschi di Siena", u"PASCITMM", Mps},
    {u"05387", u"BPER Banca", u"BPMOIT22", Bper},
    {u"06230", u"Crédit Agricole Italia", u"CRPPIT2P", CreditAgricole},
    {u"05696", u"Banca Popolare di Sondrio", u"POSOIT22", Sondrio},
    {u"08542", u"La BCC Ravennate Forlivese e Imolese", u"ICRAITRR", Bcc},
    {u"01005", u"Banca Nazionale del Lavoro", u"BNLIITRR", Bnl},
    {u"03032", u"Credito Emiliano", u"BACRIT22", Credem},
    {u"05772", u"Banca Popolare di Sant'Angelo", u"POSAIT31", SantAngelo},
    {u"05262", u"Banca Popolare Pugliese", u"BPPUIT33", Pugliese},
};

constexpr Currency Currencies[] = {
    {u"EU", u"EURO", u"EUR", 2, 1.0, 0},
    {u"US", u"DOLLARO USA", u"USD", 2, 1.0856, 5},
    {u"LS", u"STERLINA INGLESE", u"GBP", 2, 0.8567, 3},
    {u"FS", u"FRANCO SVIZZERO", u"CHF", 2, 0.9587, 3},
    {u"YE", u"YEN GIAPPONESE", u"JPY", 0, 161.23, 1},
    {u"LI", u"LIRA ITALIANA", u"ITL", 0, 1936.27, 0},
};

constexpr Account Suppliers[] = {
    {u"Acciaierie Valbormida S.p.A."},
    {u"Bellè & Figli S.n.c."},
    {u"Caffè Torrefazione Nicolò S.r.l."},
    {u"Cartotecnica dell'Università S.r.l."},
    {u"Dolciaria Cantù S.r.l."},
    {u"Edilizia Forlì Costruzioni S.p.A."},
    {u"Ferramenta Lucà Giuseppe", u"Lucà", u"Giuseppe"},
    {u"Fonderia Paternò S.r.l."},
    {u"Gruppo Logistico Adriatico S.p.A."},
    {u"Idraulica Mondovì di Ferrero Luca", u"Ferrero", u"Luca"},
    {u"Impresa di Pulizie \"La Perla\" S.c.r.l."},
    {u"Lavanderia Industriale Città Alta S.r.l."},
    {u"Legnami Fabbrì S.a.s."},
    {u"Mobilificio Nardò S.r.l."},
    {u"Officina Meccanica Bassi & C. S.n.c."},
    {u"Pelletteria Sant'Agata S.r.l."},
    {u"Plastiche Cefalù S.r.l."},
    {u"Rossi Mario", u"Rossi", u"Mario"},
    {u"Servizi Informatici Però S.r.l."},
    {u"Tipografia Gioventù S.n.c."},
    {u"Trasporti Forlivesi S.p.A."},
    {u"Vetreria Nuova Murano S.r.l."},
    {u"Zanè Energia S.r.l."},
    {u"Esposito Gennaro", u"Esposito", u"Gennaro"},
    {u"Studio Legale Avv. M. Teresa Ricciardi", u"Ricciardi", u"Maria Teresa", true},
    {u"Ottica Müller & Söhne Italia S.r.l."},
};

constexpr Account Customers[] = {
    {u"Alberghi Riviera Società Cooperativa"},
    {u"Bar Trattoria \"Da Mimì\" S.n.c."},
    {u"Bianchi Francesca", u"Bianchi", u"Francesca", true},
    {u"Centro Commerciale Le Gru S.p.A."},
    {u"Conti & Martinelli S.r.l."},
    {u"Distribuzione Alimentare Sud S.p.A."},
    {u"Enoteca Caffè Città S.n.c."},
    {u"Farmacia Santa Lucia Dr.ssa Greco", u"Greco", u"Anna", true},
    {u"Gelateria Perù S.n.c."},
    {u"Hotel Belvedere Taormina S.r.l."},
    {u"Immobiliare Corso Italia S.r.l."},
    {u"Lombardi Giulia", u"Lombardi", u"Giulia", true},
    {u"Ristorante Ca' Foscari S.r.l."},
    {u"Supermercati Nardò S.r.l."},
    {u"Università Popolare di Forlì"},
    {u"Verdi Antonio", u"Verdi", u"Antonio"},
};

constexpr PaymentTerm PaymentTerms[] = {
    {u"RD0", u"Rimessa diretta vista fattura", u'3', 1},
    {u"BB3", u"Bonifico bancario 30 gg d.f.f.m.", u'6', 1},
    {u"BB6", u"Bonifico bancario 60 gg d.f.", u'6', 1},
    {u"RB1", u"Ri.Ba. 30 gg d.f.f.m.", u'1', 1},
    {u"RB3", u"Ri.Ba. 30/60/90 gg d.f.f.m.", u'1', 3},
    {u"RID", u"R.I.D. 30 gg d.f.", u'9', 1},
    {u"CON", u"Contanti alla consegna", u'4', 1},
    {u"TR6", u"Tratta 60 gg d.f.", u'0', 1},
    {u"AV3", u"Avviso di pagamento 30 gg", u'2', 1},
    {u"CES", u"Cessione del credito", u'5', 1},
    {u"CTR", u"Contrassegno", u'7', 1},
    {u"ASC", u"Assegno circolare", u'8', 1},
};

constexpr const char16_t *PriceLists[] = {
    u"Listino base",
    u"Listino rivenditori",
    u"Listino esportazione",
};

} // namespace

std::span<const City> cities()
{
    return Cities;
}
std::span<const char16_t *const> streets()
{
    return Streets;
}
std::span<const Bank> banks()
{
    return Banks;
}
std::span<const Currency> currencies()
{
    return Currencies;
}
std::span<const Account> suppliers()
{
    return Suppliers;
}
std::span<const Account> customers()
{
    return Customers;
}
std::span<const PaymentTerm> paymentTerms()
{
    return PaymentTerms;
}
std::span<const char16_t *const> priceLists()
{
    return PriceLists;
}

} // namespace pg::archives::demodata
