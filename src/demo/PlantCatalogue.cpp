#include "demo/PlantCatalogue.h"

namespace demo {

const std::vector<const char*>& departments()
{
    static const std::vector<const char*> all = {"Stampaggio",   "Lavorazioni Meccaniche",  "Assemblaggio",
                                                 "Verniciatura", "Logistica e Imballaggio", "Servizi Generali"};
    return all;
}

const std::vector<const char*>& machineStates()
{
    // The first is by far the most common; the generator weighs them.
    static const std::vector<const char*> all = {"In servizio", "In riserva", "In revisione", "Dismessa"};
    return all;
}

const std::vector<MachineKind>& machineKinds()
{
    static const StepText quadro{"Pulizia filtri quadro elettrico",
                                 "Smontare e soffiare i filtri del condizionatore del quadro elettrico; sostituirli se "
                                 "intasati o unti.",
                                 10, 20, 2};
    static const std::vector<MachineKind> all = {
        {"PRESSA",
         {"PI 250", "PI 400", "PM 160"},
         {"Officine Presse Lariane", "Idropress Bergamasca"},
         {{"Controllo livello olio centralina",
           "A macchina ferma verificare il livello dell'olio idraulico nella centralina e rabboccare con olio HLP 46 "
           "se sotto il segno di minimo.",
           5, 10, 1},
          {"Ingrassaggio guide slitta",
           "Ingrassare le guide della slitta e le colonne con grasso al litio tramite gli ingrassatori, pulendo prima "
           "i raccordi.",
           10, 15, 1},
          {"Verifica dispositivi di sicurezza",
           "Provare le barriere fotoelettriche, i pulsanti di emergenza e il comando bimanuale; ogni difetto va "
           "segnalato e la pressa messa fuori servizio.",
           10, 20, 1},
          {"Controllo perdite circuito idraulico",
           "Ispezionare tubi, raccordi e cilindri alla ricerca di trafilamenti; serrare i raccordi allentati e "
           "annotare le perdite.",
           10, 20, 2},
          {"Sostituzione filtro di ritorno",
           "Sostituire la cartuccia del filtro di ritorno della centralina e controllare l'indicatore di intasamento.",
           15, 25, 2},
          {"Verifica parallelismo slitta",
           "Misurare con comparatore il parallelismo tra slitta e piano nei quattro angoli; registrare i valori sulla "
           "scheda.",
           30, 45, 3},
          {"Sostituzione olio idraulico",
           "Scaricare l'olio della centralina, pulire il serbatoio, sostituire il filtro di aspirazione e riempire con "
           "olio nuovo HLP 46.",
           60, 120, 3},
          {"Controllo serraggio bulloneria",
           "Verificare con chiave dinamometrica il serraggio dei tiranti e della bulloneria del basamento.", 20, 30,
           3}},
         {"Centralina idraulica", "Cilindro principale", "Slitta", "Quadro elettrico", "Barriera fotoelettrica"},
         0},
        {"TORNIO CNC",
         {"TC 420", "TC 500 Y", "TL 32"},
         {"Torneria Orobica", "Meccanica Valseriana"},
         {{"Pulizia trucioli e vasca refrigerante",
           "Rimuovere i trucioli dalla zona di lavoro e dal convogliatore; pulire il filtro della vasca del "
           "refrigerante.",
           10, 20, 1},
          {"Controllo concentrazione emulsione",
           "Misurare con il rifrattometro la concentrazione dell'emulsione (valore corretto 5-7%) e correggerla.", 5,
           10, 1},
          {"Verifica lubrificazione centralizzata",
           "Controllare il livello del serbatoio di lubrificazione e l'effettiva uscita dell'olio sulle guide.", 5, 10,
           1},
          {"Controllo pressione autocentrante",
           "Verificare sul manometro la pressione di serraggio dell'autocentrante idraulico e lo stato delle griffe.",
           10, 15, 2},
          quadro,
          {"Verifica gioco assi",
           "Misurare il gioco di inversione degli assi X e Z con comparatore e aggiornare la compensazione se "
           "necessario.",
           30, 60, 3},
          {"Sostituzione emulsione",
           "Svuotare e pulire la vasca, sanificare il circuito e riempire con emulsione nuova.", 60, 90, 3}},
         {"Mandrino", "Torretta portautensili", "Vasca refrigerante", "Quadro elettrico", "Convogliatore trucioli"},
         1},
        {"CENTRO DI LAVORO",
         {"CL 800", "CL 1200 5X", "FV 650"},
         {"Fresatrici Canavesane", "Meccanica Valseriana"},
         {{"Pulizia tavola e protezioni",
           "Pulire tavola, morse e soffietti di protezione; controllare che le lamiere telescopiche scorrano senza "
           "impuntamenti.",
           10, 15, 1},
          {"Controllo pressione aria",
           "Verificare che la pressione dell'aria in ingresso sia di 6 bar e scaricare la condensa dal gruppo "
           "filtro-riduttore.",
           5, 10, 1},
          {"Verifica cambio utensile",
           "Eseguire un ciclo completo del cambio utensile controllando il bloccaggio dei coni e la pulizia delle "
           "pinze.",
           15, 20, 2},
          {"Controllo tiraggio mandrino",
           "Misurare la forza di tiraggio del mandrino con l'apposito strumento e riportare il valore sulla scheda.",
           15, 25, 2},
          quadro,
          {"Verifica geometrica assi",
           "Controllare perpendicolarità e planarità degli assi con squadra e comparatore secondo la scheda di "
           "collaudo.",
           60, 90, 3},
          {"Sostituzione olio gruppo idraulico",
           "Sostituire l'olio del gruppo idraulico e la cartuccia del filtro di mandata.", 40, 60, 3}},
         {"Mandrino", "Magazzino utensili", "Tavola rotante", "Gruppo idraulico", "Quadro elettrico"},
         1},
        {"COMPRESSORE",
         {"CV 37", "CV 55 Inverter", "CS 22"},
         {"Compressori Euganei", "Aria Compressa Veneta"},
         {{"Scarico condensa",
           "Aprire lo scarico del serbatoio e dell'essiccatore finché esce solo aria; verificare lo scaricatore "
           "automatico.",
           5, 10, 1},
          {"Controllo livello olio",
           "Leggere il livello dell'olio dalla spia a compressore fermo da almeno cinque minuti; rabboccare con olio "
           "per compressori a vite.",
           5, 10, 1},
          {"Pulizia filtro aspirazione",
           "Smontare il filtro dell'aria aspirata e soffiarlo dall'interno verso l'esterno; sostituirlo se "
           "danneggiato.",
           10, 15, 2},
          {"Controllo tensione cinghie",
           "Verificare la tensione e l'usura delle cinghie di trasmissione; ritensionare o sostituire la coppia.", 15,
           20, 2},
          {"Sostituzione filtro disoleatore",
           "Sostituire il filtro separatore aria-olio e la sua guarnizione; controllare la pressione differenziale.",
           30, 45, 3},
          {"Sostituzione olio e filtro olio",
           "Scaricare l'olio a caldo, sostituire il filtro e riempire fino al livello massimo.", 40, 60, 3},
          {"Verifica valvola di sicurezza",
           "Provare manualmente la valvola di sicurezza del serbatoio e controllare la taratura del pressostato.", 10,
           15, 3}},
         {"Gruppo vite", "Motore elettrico", "Essiccatore", "Serbatoio", "Trasmissione"},
         5},
        {"NASTRO TRASPORTATORE",
         {"NT 600", "NT 1000 R", "NR 400"},
         {"Trasporti Interni Padani", "Convogliatori Emiliani"},
         {{"Controllo allineamento nastro",
           "Osservare il nastro in movimento e correggere lo scarrucolamento agendo sui tenditori della testata.", 10,
           15, 1},
          {"Verifica fune di emergenza",
           "Tirare la fune di emergenza in più punti e controllare l'arresto immediato del nastro.", 5, 10, 1},
          {"Pulizia rulli e raschiatori",
           "Rimuovere i residui dai rulli di rinvio e controllare l'usura delle lame raschiatrici.", 10, 20, 2},
          {"Ingrassaggio supporti",
           "Ingrassare i supporti dei rulli motore e di rinvio con grasso al litio, senza eccedere.", 10, 15, 2},
          {"Controllo motoriduttore",
           "Verificare livello dell'olio, rumorosità e temperatura del motoriduttore; controllare i bulloni di "
           "fissaggio.",
           10, 20, 2},
          {"Sostituzione olio motoriduttore",
           "Scaricare e sostituire l'olio del riduttore con olio sintetico ISO VG 220.", 30, 45, 3}},
         {"Motoriduttore", "Rullo motore", "Rullo di rinvio", "Nastro", "Fune di emergenza"},
         4},
        {"ROBOT DI SALDATURA",
         {"RS 6 Arco", "RS 10 Spot"},
         {"Robotica Sabauda", "Automazioni Lariane"},
         {{"Pulizia torcia e ugello",
           "Pulire ugello e diffusore dagli spruzzi di saldatura; sostituire la punta guidafilo se consumata.", 10, 15,
           1},
          {"Controllo cavi e guaine", "Ispezionare il fascio cavi lungo il braccio alla ricerca di abrasioni e pieghe.",
           10, 15, 1},
          {"Verifica recinzione e porte",
           "Provare gli interruttori di sicurezza delle porte della cella: all'apertura il robot deve fermarsi.", 10,
           15, 1},
          {"Controllo punto TCP",
           "Verificare la posizione del punto utensile con la punta di riferimento e ricalibrare se fuori tolleranza.",
           20, 30, 2},
          {"Sostituzione batterie encoder",
           "Sostituire le batterie di backup degli encoder a controllore acceso, per non perdere la posizione.", 20, 30,
           3},
          {"Sostituzione grasso riduttori",
           "Sostituire il grasso dei riduttori degli assi da 1 a 6 secondo le quantità della tabella del costruttore.",
           90, 150, 3}},
         {"Torcia", "Trainafilo", "Asse 1", "Polso", "Controllore"},
         2},
        {"FORNO DI ESSICCAZIONE",
         {"FE 3000", "FE 4500 Gas"},
         {"Termoforni Adriatici"},
         {{"Controllo bruciatore",
           "Verificare l'accensione regolare del bruciatore e il colore della fiamma dalla spia.", 10, 15, 1},
          {"Pulizia filtri ricircolo",
           "Smontare e pulire i filtri del ricircolo dell'aria calda; sostituirli se incrostati di vernice.", 20, 30,
           2},
          {"Verifica termoregolatori",
           "Confrontare la temperatura indicata con un termometro di riferimento e annotare lo scostamento.", 15, 20,
           2},
          {"Controllo guarnizioni porte",
           "Controllare le guarnizioni delle porte e delle ispezioni; sostituire i tratti bruciati.", 15, 20, 2},
          {"Analisi fumi",
           "Eseguire l'analisi dei fumi del bruciatore e registrare rendimento e CO sul libretto d'impianto.", 40, 60,
           3},
          {"Pulizia camera di combustione", "Pulire la camera di combustione e lo scambiatore dalla fuliggine.", 60,
           120, 3}},
         {"Bruciatore", "Ventilatore ricircolo", "Camera di combustione", "Quadro comandi"},
         3},
        {"CABINA DI VERNICIATURA",
         {"CV 6000", "CV 8000 Secco"},
         {"Impianti Vernici Brianza"},
         {{"Sostituzione filtri pavimento",
           "Sostituire i filtri a pavimento carichi di overspray e smaltirli come rifiuto speciale.", 20, 30, 1},
          {"Controllo pressostato differenziale",
           "Leggere la pressione differenziale dei filtri a soffitto; sostituirli oltre il valore di fine vita.", 5, 10,
           1},
          {"Pulizia griglie e pareti", "Raschiare le griglie del pavimento e pulire le pareti con prodotto pelabile.",
           30, 45, 2},
          {"Verifica aspiratore", "Controllare vibrazioni, cinghie e cuscinetti dell'aspiratore principale.", 15, 25,
           2},
          {"Sostituzione filtri soffitto",
           "Sostituire i filtri a soffitto del plenum indossando i dispositivi di protezione.", 45, 60, 3}},
         {"Aspiratore", "Plenum", "Filtri pavimento", "Illuminazione"},
         3},
        {"AVVOLGITRICE",
         {"AV 1500", "AV 2000 Rotor"},
         {"Imballaggi Tirreno"},
         {{"Pulizia rulli prestiro", "Pulire i rulli di prestiro dai residui di film con alcool isopropilico.", 10, 15,
           1},
          {"Controllo catena rotazione", "Verificare tensione e lubrificazione della catena della tavola rotante.", 10,
           15, 1},
          {"Verifica fotocellula altezza",
           "Pulire la lente della fotocellula di lettura altezza e provarne l'intervento con un bancale.", 5, 10, 2},
          {"Controllo freno carrello", "Controllare la frenatura del carrello porta bobina e l'usura delle pastiglie.",
           15, 20, 2},
          {"Sostituzione cinghia sollevamento",
           "Sostituire la cinghia dentata del sollevamento carrello e registrarne la tensione.", 40, 60, 3}},
         {"Tavola rotante", "Carrello porta bobina", "Rulli prestiro", "Fotocellula"},
         4},
        {"TRAPANO A COLONNA",
         {"TR 32", "TR 40 Auto"},
         {"Utensileria Berica"},
         {{"Pulizia e lubrificazione colonna", "Pulire la colonna e la cremagliera e lubrificarle con olio leggero.", 5,
           10, 1},
          {"Verifica protezione punta",
           "Controllare lo schermo di protezione della punta e il microinterruttore che impedisce l'avvio se aperto.",
           5, 10, 1},
          {"Controllo cinghia mandrino",
           "Verificare tensione e usura della cinghia del mandrino; sostituirla se sfilacciata.", 10, 15, 2},
          {"Controllo gioco canotto", "Misurare il gioco radiale del canotto e registrare i lardoni di guida.", 15, 20,
           3}},
         {"Mandrino", "Motore", "Tavola"},
         1},
        {"IMPIANTO DI ASPIRAZIONE",
         {"AS 12", "AS 20 Maniche"},
         {"Aria Pulita Brianza"},
         {{"Svuotamento contenitore polveri",
           "Svuotare il contenitore delle polveri sotto la tramoggia e controllare la tenuta del coperchio.", 10, 15,
           1},
          {"Controllo pulizia maniche",
           "Verificare il ciclo di pulizia delle maniche ad aria compressa e la pressione differenziale del filtro.",
           10, 15, 1},
          {"Verifica serrande", "Controllare l'apertura e la chiusura delle serrande di ogni ramo dell'impianto.", 10,
           20, 2},
          {"Sostituzione maniche filtranti",
           "Sostituire tutte le maniche filtranti e i cestelli danneggiati; smaltire le maniche esauste.", 90, 180, 3}},
         {"Filtro a maniche", "Ventilatore", "Coclea", "Serrande"},
         5},
        {"CARRELLO ELEVATORE",
         {"CE 25 Elettrico", "CE 30 Diesel"},
         {"Carrelli Elevatori Orobici"},
         {{"Controllo batteria",
           "Controllare il livello dell'elettrolito, rabboccare con acqua demineralizzata e pulire i morsetti.", 10, 15,
           1},
          {"Verifica freni e sterzo", "Provare freno di servizio, freno di stazionamento e sterzo a vuoto e a carico.",
           10, 15, 1},
          {"Controllo catene montante", "Misurare l'allungamento delle catene del montante e lubrificarle.", 15, 20, 2},
          {"Verifica forche", "Controllare spessore e planarità delle forche e i perni di bloccaggio.", 10, 15, 2},
          {"Sostituzione olio idraulico",
           "Sostituire l'olio idraulico e il filtro di aspirazione; spurgare l'aria dai cilindri di sollevamento.", 40,
           60, 3}},
         {"Montante", "Batteria", "Impianto frenante", "Forche"},
         4},
        {"RETTIFICATRICE",
         {"RP 600", "RT 1000 Tangenziale"},
         {"Rettifiche Canavesane"},
         {{"Ravvivatura mola", "Ravvivare la mola con il diamante e controllarne il profilo.", 10, 15, 1},
          {"Pulizia filtro a carta refrigerante",
           "Sostituire il rotolo del filtro a carta e pulire la vasca del refrigerante.", 10, 15, 1},
          {"Controllo equilibratura mola",
           "Equilibrare la mola con le masse della flangia fino a vibrazioni inferiori al limite.", 20, 30, 2},
          {"Verifica idraulica tavola",
           "Controllare pressione, inversione e velocità della tavola; cercare trafilamenti sui cilindri.", 20, 30, 2},
          {"Controllo precisione",
           "Rettificare un pezzo campione e misurarne cilindricità e rugosità; registrare i valori.", 45, 60, 3}},
         {"Mola", "Tavola", "Gruppo refrigerante", "Centralina"},
         1},
    };
    return all;
}

const std::vector<PartCategory>& partCategories()
{
    static const std::vector<PartCategory> all = {
        {"Cuscinetti",
         "pz",
         {{"Cuscinetto radiale 6204 2RS", "6204-2RS", 8.5},
          {"Cuscinetto radiale 6206 ZZ", "6206-ZZ", 11.2},
          {"Cuscinetto a rulli conici 30208", "30208", 24.9},
          {"Cuscinetto orientabile 22210 E", "22210-E", 68.0},
          {"Supporto UCP 205", "UCP205", 19.5}}},
        {"Cinghie",
         "pz",
         {{"Cinghia trapezoidale SPA 1250", "SPA1250", 14.8},
          {"Cinghia dentata HTD 8M-1200", "8M-1200-30", 42.0},
          {"Cinghia Poly-V 8PK1450", "8PK1450", 21.5}}},
        {"Filtri",
         "pz",
         {{"Filtro olio idraulico 10 micron", "HF-10-160", 36.0},
          {"Filtro aspirazione aria compressore", "FA-37", 48.0},
          {"Filtro separatore aria-olio", "SEP-55", 95.0},
          {"Filtro a tasca cabina G4", "G4-592", 12.5},
          {"Cartuccia filtro refrigerante", "CR-200", 22.0}}},
        {"Oli e Lubrificanti",
         "lt",
         {{"Olio idraulico HLP 46", "HLP46-20", 4.2},
          {"Olio per riduttori ISO VG 220", "VG220-20", 6.8},
          {"Olio per compressori a vite", "CV-OIL-5", 11.5}}},
        {"Grassi", "kg", {{"Grasso al litio EP2", "EP2-5KG", 9.0}, {"Grasso per riduttori robot", "GR-RB-1", 62.0}}},
        {"Guarnizioni e Tenute",
         "pz",
         {{"Anello di tenuta 35x52x7", "AT-35527", 2.9},
          {"Kit guarnizioni cilindro D.80", "KG-80", 58.0},
          {"O-Ring 20x2 NBR", "OR-20X2", 0.6},
          {"Paraolio 40x62x8", "PO-40628", 3.4}}},
        {"Materiale Elettrico",
         "pz",
         {{"Fusibile 10x38 gG 16A", "FU-1038-16", 2.1},
          {"Contattore 3 poli 18A 24V", "CT-18-24", 38.0},
          {"Relè termico 9-13A", "RT-913", 31.0},
          {"Lampada di segnalazione LED 24V", "LS-24", 6.5}}},
        {"Sensori",
         "pz",
         {{"Sensore induttivo M18 PNP", "SI-M18", 27.0},
          {"Fotocellula a riflessione", "FC-R50", 64.0},
          {"Finecorsa a leva", "FC-LV", 18.5},
          {"Pressostato 0-10 bar", "PS-10", 45.0}}},
        {"Pneumatica",
         "pz",
         {{"Elettrovalvola 5/2 24V DC", "EV-52-24", 56.0},
          {"Raccordo rapido D.8", "RR-8", 1.9},
          {"Cilindro pneumatico D.50 C.100", "CP-50-100", 88.0}}},
        {"Tubi e Raccordi", "mt", {{"Tubo poliuretano 8x6", "PU-8X6", 1.2}, {"Tubo idraulico R2 3/8", "R2-38", 9.8}}},
        {"Materiale di Consumo",
         "pz",
         {{"Punta guidafilo M6 1,0", "PG-10", 0.9},
          {"Ugello torcia conico", "UG-16", 4.5},
          {"Mola 400x50x127", "MO-400", 145.0}}},
    };
    return all;
}

const std::vector<const char*>& interventionCauses()
{
    static const std::vector<const char*> all = {"Usura",
                                                 "Manutenzione programmata",
                                                 "Rottura",
                                                 "Guasto elettrico",
                                                 "Perdita d'olio",
                                                 "Vibrazioni anomale",
                                                 "Sostituzione preventiva",
                                                 "Urto accidentale"};
    return all;
}

const std::vector<SupplierText>& suppliers()
{
    static const std::vector<SupplierText> all = {
        {"CUSCINETTI ADRIATICA", "Cuscinetti Adriatica S.r.l.", "Via dell'Industria 14", "60131", "Ancona", "AN"},
        {"OLEODINAMICA VALTELLINA", "Oleodinamica Valtellina S.p.A.", "Via Stelvio 88", "23100", "Sondrio", "SO"},
        {"ELETTROFORNITURE LOMBARDE", "Elettroforniture Lombarde S.r.l.", "Viale Lombardia 211", "20900", "Monza",
         "MB"},
        {"TRASMISSIONI PADANE", "Trasmissioni Padane S.n.c.", "Via Emilia Ovest 1020", "41123", "Modena", "MO"},
        {"FILTRI E TENUTE EMILIANE", "Filtri e Tenute Emiliane S.r.l.", "Via del Lavoro 5", "40127", "Bologna", "BO"},
        {"UTENSILERIA BERICA", "Utensileria Berica S.r.l.", "Strada Marosticana 47", "36100", "Vicenza", "VI"},
    };
    return all;
}

const std::vector<OperatorText>& operators()
{
    static const std::vector<OperatorText> all = {
        {"Bianchi Marco", "Capo squadra", "Interno"},
        {"Ferraris Luca", "Manutentore meccanico", "Interno"},
        {"Colombo Andrea", "Manutentore elettrico", "Interno"},
        {"Ricci Giovanni", "Elettromeccanico", "Interno"},
        {"Marinoni Paolo", "Manutentore meccanico", "Interno"},
        {"Greco Stefano", "Oleodinamico", "Esterno"},
        {"Brunetti Alessandro", "Manutentore elettrico", "Interno"},
        {"Galli Davide", "Tecnico frigorista", "Esterno"},
        {"Conti Roberto", "Manutentore meccanico", "Interno"},
    };
    return all;
}

const std::vector<NoteText>& machineNotes()
{
    static const std::vector<NoteText> all = {
        {"Guasto", "Oleodinamica",
         "Trafilamento d'olio dal raccordo di mandata del cilindro: serrato il raccordo, da ricontrollare alla "
         "prossima manutenzione."},
        {"Osservazione", "Meccanica",
         "Rumorosità anomala del cuscinetto lato motore a pieno carico. Ordinato il ricambio."},
        {"Sicurezza", "Elettrica",
         "La fune di emergenza non arrestava il nastro al primo tratto: sostituito il finecorsa e provato in tre "
         "punti."},
        {"Guasto", "Elettrica",
         "Intervento ripetuto del relè termico del motore principale; misurati assorbimenti "
         "regolari, sostituito il relè."},
        {"Miglioria", "Pneumatica",
         "Aggiunto un secondo gruppo filtro-riduttore a monte dell'elettrovalvola per ridurre la condensa."},
        {"Osservazione", "Meccanica", "Gioco sull'asse X vicino al limite di tolleranza: valori riportati in scheda."},
        {"Guasto", "Meccanica", "Rotta la cinghia di trasmissione durante il turno di notte; sostituita la coppia."},
        {"Sicurezza", "Meccanica",
         "Riparata la porta della recinzione che non chiudeva il microinterruttore di sicurezza."},
        {"Osservazione", "Oleodinamica",
         "Temperatura dell'olio della centralina a 62 gradi a fine turno: pulire lo "
         "scambiatore alla prossima fermata."},
        {"Miglioria", "Elettrica", "Sostituite le lampade del quadro comandi con lampade a LED."},
    };
    return all;
}

const std::vector<NoteText>& generalNotes()
{
    static const std::vector<NoteText> all = {
        {"Organizzazione", "Reparto",
         "Dal lunedì i turni di manutenzione programmata si svolgono dalle 6 alle 14 durante la fermata delle linee."},
        {"Sicurezza", "Reparto",
         "Ricordare a tutti l'uso del lucchetto personale per il blocco delle energie prima di ogni intervento."},
        {"Organizzazione", "Magazzino",
         "Inventario del magazzino ricambi a fine mese: segnalare le giacenze che non corrispondono."},
    };
    return all;
}

} // namespace demo
