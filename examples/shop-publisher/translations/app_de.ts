<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CommandLine</name>
    <message>
        <source>Show this help.</source>
        <translation>Zeigt diese Hilfe.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Zeigt die Version.</translation>
    </message>
    <message>
        <source>Print nothing but failures.</source>
        <translation>Gibt nur Fehlschläge aus.</translation>
    </message>
    <message>
        <source>Show the way that each failure took.</source>
        <translation>Zeigt den Weg jedes Fehlers.</translation>
    </message>
    <message>
        <source>Speak this language (%1); else the system&apos;s.</source>
        <translation>Spricht diese Sprache (%1); sonst die des Systems.</translation>
    </message>
    <message>
        <source>code</source>
        <translation>Kürzel</translation>
    </message>
    <message>
        <source>Two folders are needed, PROJECT and SITE; %1 given.</source>
        <translation>Es braucht zwei Ordner, PROJECT und SITE; angegeben: %1.</translation>
    </message>
    <message>
        <source>The name of a folder is empty.</source>
        <translation>Der Name eines Ordners ist leer.</translation>
    </message>
    <message>
        <source>Go on and publish what changes in PROJECT, until Ctrl-C.</source>
        <translation>Läuft weiter und veröffentlicht, was sich in PROJECT ändert, bis Strg-C.</translation>
    </message>
    <message>
        <source>Publish into a SITE that this program has not made, or that shows another project. What it replaces there is lost.</source>
        <translation>In eine SITE veröffentlichen, die nicht von diesem Programm stammt oder ein anderes Projekt zeigt. Was dort ersetzt wird, ist verloren.</translation>
    </message>
    <message>
        <source>Publish photographs that break off; what is missing is grey.</source>
        <translation>Auch Fotos veröffentlichen, die abbrechen; was fehlt, ist grau.</translation>
    </message>
    <message>
        <source>Import so many photographs at a time; else as many as the processor works on.</source>
        <translation>So viele Fotos auf einmal importieren; sonst so viele, wie der Prozessor bearbeitet.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Folder that holds photos/, or a plain folder of photographs (JPEG, PNG, GIF, SVG, WebP, TIFF).</source>
        <translation>Ordner, der photos/ enthält, oder ein einfacher Ordner mit Fotos (JPEG, PNG, GIF, SVG, WebP, TIFF).</translation>
    </message>
    <message>
        <source>The number of jobs &quot;%1&quot; is not a whole number from 1 to 256.</source>
        <translation>Die Anzahl „%1“ ist keine ganze Zahl von 1 bis 256.</translation>
    </message>
    <message>
        <source>Print what happens for other programs: a JSON object in each line.</source>
        <translation>Gibt für andere Programme aus, was geschieht: in jeder Zeile ein JSON-Objekt.</translation>
    </message>
    <message>
        <source>One folder is needed after &quot;%1&quot;; %2 given.</source>
        <translation>Nach „%1“ wird ein Ordner gebraucht; angegeben: %2.</translation>
    </message>
    <message>
        <source>Folder of the web site, made when missing.</source>
        <translation>Ordner der Website; wird angelegt, wenn er fehlt.</translation>
    </message>
    <message>
        <source>Imports the photographs of a shop project upright into a web site and makes the pages that show them.

  shop-publisher PROJECT SITE    publishes the project
  shop-publisher check PROJECT   says everything that is wrong in it, writes nothing
  shop-publisher init FOLDER     begins a project: a shop.json, and a README beside it

Careful: in SITE the program replaces its pages and pictures, removes those whose photographs have gone, and makes static/ equal to that of PROJECT: whatever else is in there is lost. A SITE that it has not made is refused.

Exit code: 0 all imported, 1 some failed, 2 bad usage, 130 stopped by Ctrl-C,
3 the project is open in another instance.</source>
        <translation>Importiert die Fotografien eines Ladens aufrecht in eine Website und macht die Seiten, die sie zeigen.

  shop-publisher PROJECT SITE    veröffentlicht das Projekt
  shop-publisher check PROJECT   sagt alles, was nicht stimmt, und schreibt nichts
  shop-publisher init FOLDER     beginnt ein Projekt: eine shop.json und ein README daneben

Vorsicht: In SITE ersetzt das Programm seine Seiten und Bilder, entfernt die, deren Fotografien fort sind, und macht static/ dem von PROJECT gleich: Was sonst darin liegt, geht verloren. Ein SITE, das es nicht gemacht hat, wird abgelehnt.

Rückgabewert: 0 alles importiert, 1 manches misslungen, 2 falscher Aufruf, 130 durch Ctrl-C beendet,
3 das Projekt ist in einer anderen Instanz geöffnet.</translation>
    </message>
</context>
<context>
    <name>Console</name>
    <message numerus="yes">
        <source>%n failure(s):</source>
        <translation>
            <numerusform>%n Fehlschlag:</numerusform>
            <numerusform>%n Fehlschläge:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ContactSheet</name>
    <message numerus="yes">
        <source>%n photograph(s)</source>
        <translation>
            <numerusform>%n Foto</numerusform>
            <numerusform>%n Fotos</numerusform>
        </translation>
    </message>
    <message>
        <source>There is nothing to show yet.</source>
        <translation>Es gibt noch nichts zu zeigen.</translation>
    </message>
    <message>
        <source>To the shop</source>
        <translation>Zum Shop</translation>
    </message>
</context>
<context>
    <name>Languages</name>
    <message>
        <source>en</source>
        <extracomment>The code of the language of this translation.</extracomment>
        <translation>de</translation>
    </message>
</context>
<context>
    <name>PageTexts</name>
    <message>
        <source>VAT</source>
        <translation>MwSt.</translation>
    </message>
    <message>
        <source>incl. VAT</source>
        <translation>inkl. MwSt.</translation>
    </message>
    <message>
        <source>net</source>
        <translation>netto</translation>
    </message>
    <message>
        <source>Prices in %1, with the VAT of %2.</source>
        <translation>Preise in %1, Mehrwertsteuer: %2.</translation>
    </message>
    <message>
        <source>All photographs</source>
        <translation>Alle Fotos</translation>
    </message>
    <message>
        <source>VAT rates of %1.</source>
        <translation>Mehrwertsteuersätze vom %1.</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Bestellen</translation>
    </message>
    <message>
        <source>Imprint</source>
        <translation>Impressum</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Sprachen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Vorige Seite</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Nächste Seite</translation>
    </message>
</context>
<context>
    <name>PictureCheck</name>
    <message>
        <source>cannot be opened (%1)</source>
        <translation>lässt sich nicht öffnen (%1)</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>holds a picture of the kind %1, which does not go with its name</source>
        <translation>enthält ein Bild der Art %1, das nicht zu seinem Namen passt</translation>
    </message>
    <message>
        <source>cannot be decoded (%1)</source>
        <translation>lässt sich nicht dekodieren (%1)</translation>
    </message>
    <message>
        <source>cannot be read: the SVG plugin of Qt is not installed</source>
        <translation>lässt sich nicht lesen: das SVG-Plugin von Qt ist nicht installiert</translation>
    </message>
    <message>
        <source>%1 × %2 pixels: larger than %3 million pixels</source>
        <translation>%1 × %2 Pixel: größer als %3 Millionen Pixel</translation>
    </message>
    <message>
        <source>is an SVG picture of more than %1 MiB</source>
        <translation>ist ein SVG-Bild von mehr als %1 MiB</translation>
    </message>
    <message>
        <source>cannot be decoded (it is not a JPEG, PNG, GIF, SVG, WebP or TIFF picture)</source>
        <translation>kann nicht dekodiert werden (es ist kein JPEG-, PNG-, GIF-, SVG-, WebP- oder TIFF-Bild)</translation>
    </message>
    <message>
        <source>holds a picture of the kind %1, which is not published</source>
        <translation>enthält ein Bild der Art %1, die nicht veröffentlicht wird</translation>
    </message>
</context>
<context>
    <name>PictureImporter</name>
    <message>
        <source>%1: FAILED, %2</source>
        <translation>%1: FEHLER, %2</translation>
    </message>
    <message>
        <source>is a link into the site itself</source>
        <translation>ist ein Verweis in die Website selbst</translation>
    </message>
    <message>
        <source>cannot be decoded (its content is damaged)</source>
        <translation>kann nicht dekodiert werden (der Inhalt ist beschädigt)</translation>
    </message>
    <message>
        <source>cannot be saved in the site, where %1 are free; nothing more was published</source>
        <translation>kann in der Website, wo %1 frei sind, nicht gespeichert werden; mehr wurde nicht veröffentlicht</translation>
    </message>
    <message>
        <source>breaks off before its end (--accept-truncated publishes it all the same)</source>
        <translation>bricht vor dem Ende ab (--accept-truncated veröffentlicht es trotzdem)</translation>
    </message>
    <message>
        <source>has more pixels than fit into memory</source>
        <translation>hat mehr Pixel, als in den Speicher passen</translation>
    </message>
    <message>
        <source>has gone</source>
        <translation>ist verschwunden</translation>
    </message>
    <message>
        <source>cannot be checked: there is no room in the folder for temporary files</source>
        <translation>kann nicht geprüft werden: Im Ordner für temporäre Dateien ist kein Platz</translation>
    </message>
</context>
<context>
    <name>Program</name>
    <message>
        <source>Try &apos;shop-publisher --help&apos; for more.</source>
        <translation>Mehr sagt „shop-publisher --help“.</translation>
    </message>
    <message numerus="yes">
        <source>Stopped: %1 of %n photograph(s) imported, no page written</source>
        <translation>
            <numerusform>Angehalten: %1 von %n Foto importiert, keine Seite geschrieben</numerusform>
            <numerusform>Angehalten: %1 von %n Fotos importiert, keine Seite geschrieben</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photograph(s) imported: %2</source>
        <translation>
            <numerusform>%1 von %n Foto importiert: %2</numerusform>
            <numerusform>%1 von %n Fotos importiert: %2</numerusform>
        </translation>
    </message>
    <message>
        <source>There are no texts in the language %1, only in: %2.</source>
        <translation>In der Sprache %1 gibt es keine Texte, nur in: %2.</translation>
    </message>
    <message>
        <source>There is no folder %1.</source>
        <translation>Es gibt keinen Ordner %1.</translation>
    </message>
    <message>
        <source>Shop: %1</source>
        <translation>Laden: %1</translation>
    </message>
    <message>
        <source>No lock: the project&apos;s folder %1 cannot be written to</source>
        <translation>Keine Sperre: in den Projektordner %1 lässt sich nicht schreiben</translation>
    </message>
    <message>
        <source>Not published, because of their kind: %1</source>
        <translation>Wegen ihrer Art nicht veröffentlicht: %1</translation>
    </message>
    <message>
        <source>Begun: %1. Read README.md there, put photographs into photos/, and try &apos;shop-publisher check&apos;.</source>
        <translation>Begonnen: %1. Lesen Sie README.md dort, legen Sie Fotografien in photos/ und versuchen Sie „shop-publisher check“.</translation>
    </message>
    <message>
        <source>Held by process %1 (%2) on %3</source>
        <translation>Gehalten von Prozess %1 (%2) auf %3</translation>
    </message>
    <message numerus="yes">
        <source>Nothing is wrong: %n photograph(s) can be published</source>
        <translation>
            <numerusform>Alles stimmt: %n Fotografie kann veröffentlicht werden</numerusform>
            <numerusform>Alles stimmt: %n Fotografien können veröffentlicht werden</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 is there already, so nothing was written.</source>
        <translation>%1 ist schon da, darum wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Der Ordner %1 kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>%1 cannot be written (%2).</source>
        <translation>%1 kann nicht geschrieben werden (%2).</translation>
    </message>
</context>
<context>
    <name>Project</name>
    <message>
        <source>is a link to a folder, which is not followed</source>
        <translation>ist ein Verweis auf einen Ordner, dem nicht gefolgt wird</translation>
    </message>
    <message>
        <source>is a link that leads nowhere</source>
        <translation>ist ein Verweis, der ins Leere führt</translation>
    </message>
    <message>
        <source>is not a file</source>
        <translation>ist keine Datei</translation>
    </message>
    <message>
        <source>cannot be read (%1)</source>
        <translation>lässt sich nicht lesen (%1)</translation>
    </message>
    <message>
        <source>has a name that is not valid UTF-8; please rename it</source>
        <translation>hat einen Namen, der kein gültiges UTF-8 ist; bitte umbenennen</translation>
    </message>
    <message>
        <source>Photographs</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>is a link that leads out of the static files</source>
        <translation>ist eine Verknüpfung, die aus den statischen Dateien hinausführt</translation>
    </message>
</context>
<context>
    <name>Publication</name>
    <message>
        <source>the shop is not written, because the photograph &quot;%1&quot; of one of its products could not be imported</source>
        <translation>der Laden wird nicht geschrieben, weil sich das Foto „%1“ eines seiner Produkte nicht importieren ließ</translation>
    </message>
    <message>
        <source>there is no photograph, so nothing was published</source>
        <translation>es gibt kein Foto; nichts wurde veröffentlicht</translation>
    </message>
    <message>
        <source>SITE shows the photographs of another project, and none of these; --force replaces them</source>
        <translation>SITE zeigt die Fotos eines anderen Projekts und keines von diesen; --force ersetzt sie</translation>
    </message>
    <message>
        <source>leads into the site itself</source>
        <translation>führt in die Site selbst</translation>
    </message>
    <message>
        <source>cannot be opened (%1)</source>
        <translation>kann nicht geöffnet werden (%1)</translation>
    </message>
    <message>
        <source>cannot be copied (%1)</source>
        <translation>kann nicht kopiert werden (%1)</translation>
    </message>
</context>
<context>
    <name>ShopFile</name>
    <message>
        <source>is missing</source>
        <translation>fehlt</translation>
    </message>
    <message>
        <source>is no text</source>
        <translation>ist kein Text</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>has no text in &quot;%1&quot;</source>
        <translation>hat keinen Text in „%1“</translation>
    </message>
    <message>
        <source>is no text in &quot;%1&quot;</source>
        <translation>ist kein Text in „%1“</translation>
    </message>
    <message>
        <source>is no list of languages</source>
        <translation>ist keine Liste von Sprachen</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no code of a language, such as &quot;fr&quot; or &quot;pt_BR&quot;</source>
        <translation>„%1“ ist kein Kürzel einer Sprache wie „fr“ oder „pt_BR“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; stands there twice</source>
        <translation>„%1“ steht zweimal da</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no code of a currency, such as &quot;EUR&quot;</source>
        <translation>„%1“ ist kein Kürzel einer Währung wie „EUR“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no country of the European Union whose tax rates are known, such as &quot;FR&quot;</source>
        <translation>„%1“ ist kein Land der Europäischen Union, dessen Steuersätze bekannt sind, wie „FR“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no family of the catalogue of web fonts</source>
        <translation>„%1“ ist keine Familie aus dem Verzeichnis der Webschriften</translation>
    </message>
    <message>
        <source>is no list of products</source>
        <translation>ist keine Liste von Produkten</translation>
    </message>
    <message>
        <source>is no object</source>
        <translation>ist kein Objekt</translation>
    </message>
    <message>
        <source>%1, product %2</source>
        <translation>%1, Produkt %2</translation>
    </message>
    <message>
        <source>%1, product %2 (%3)</source>
        <translation>%1, Produkt %2 (%3)</translation>
    </message>
    <message>
        <source>there is no photograph &quot;%1&quot;</source>
        <translation>es gibt kein Foto „%1“</translation>
    </message>
    <message>
        <source>is no tax category: a number from 0 to 4</source>
        <translation>ist keine Steuerklasse: eine Zahl von 0 bis 4</translation>
    </message>
    <message>
        <source>is no number, such as 12.50</source>
        <translation>ist keine Zahl wie 12.50</translation>
    </message>
    <message>
        <source>is below zero</source>
        <translation>liegt unter null</translation>
    </message>
    <message>
        <source>is too high for a price</source>
        <translation>ist zu hoch für einen Preis</translation>
    </message>
    <message>
        <source>%1 has no rate of the category %2</source>
        <translation>%1 hat keinen Satz der Klasse %2</translation>
    </message>
    <message>
        <source>cannot be opened (%1)</source>
        <translation>lässt sich nicht öffnen (%1)</translation>
    </message>
    <message>
        <source>is no valid JSON (line %1: %2)</source>
        <translation>ist kein gültiges JSON (Zeile %1: %2)</translation>
    </message>
    <message>
        <source>holds no object</source>
        <translation>enthält kein Objekt</translation>
    </message>
    <message>
        <source>holds a control character (U+%1)</source>
        <translation>enthält ein Steuerzeichen (U+%1)</translation>
    </message>
    <message>
        <source>is neither true nor false</source>
        <translation>ist weder true noch false</translation>
    </message>
    <message>
        <source>there is no file &quot;%1&quot; below static/</source>
        <translation>es gibt keine Datei „%1“ in static/</translation>
    </message>
    <message>
        <source>has no &quot;date&quot; of the rates, such as &quot;2026-01-01&quot;</source>
        <translation>hat kein „date“ der Sätze, etwa „2026-01-01“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no tax category: a number from 0 to 4</source>
        <translation>„%1“ ist keine Steuerkategorie: eine Zahl von 0 bis 4</translation>
    </message>
    <message>
        <source>the rate of &quot;%1&quot; is no number from 0 to 100</source>
        <translation>der Satz von „%1“ ist keine Zahl von 0 bis 100</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no opaque colour of CSS, such as &quot;#9c4a27&quot;</source>
        <translation>„%1“ ist keine deckende Farbe in CSS, etwa „#9c4a27“</translation>
    </message>
    <message>
        <source>is no picture that can be read</source>
        <translation>ist kein Bild, das gelesen werden kann</translation>
    </message>
    <message>
        <source>holds &quot;?&quot; or &quot;#&quot;</source>
        <translation>enthält „?“ oder „#“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of e-mail</source>
        <translation>„%1“ ist keine E-Mail-Adresse</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of the web, such as &quot;https://shop.example/&quot;</source>
        <translation>„%1“ ist keine Web-Adresse, etwa „https://shop.example/“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of e-mail or of the web</source>
        <translation>„%1“ ist weder eine E-Mail- noch eine Web-Adresse</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no weight of a font, such as &quot;400&quot;</source>
        <translation>„%1“ ist keine Strichstärke, etwa „400“</translation>
    </message>
    <message>
        <source>is no list of photographs</source>
        <translation>ist keine Liste von Fotos</translation>
    </message>
</context>
<context>
    <name>Site</name>
    <message>
        <source>SITE lies in the folder of the photographs (%1).</source>
        <translation>SITE liegt im Ordner der Fotos (%1).</translation>
    </message>
    <message>
        <source>SITE contains the folder of the photographs (%1).</source>
        <translation>SITE enthält den Ordner der Fotos (%1).</translation>
    </message>
    <message>
        <source>SITE lies in the project (%1).</source>
        <translation>SITE liegt im Projekt (%1).</translation>
    </message>
    <message>
        <source>SITE contains the project (%1).</source>
        <translation>SITE enthält das Projekt (%1).</translation>
    </message>
    <message>
        <source>SITE is not a folder (%1).</source>
        <translation>SITE ist kein Ordner (%1).</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Der Ordner %1 lässt sich nicht anlegen.</translation>
    </message>
    <message>
        <source>cannot be written to %1 (%2)</source>
        <translation>lässt sich nicht nach %1 schreiben (%2)</translation>
    </message>
    <message>
        <source>cannot be written (%1)</source>
        <translation>lässt sich nicht schreiben (%1)</translation>
    </message>
    <message>
        <source>cannot be written: %1 is a link that leads out of the site</source>
        <translation>lässt sich nicht schreiben: %1 ist ein Verweis, der aus der Website führt</translation>
    </message>
    <message>
        <source>cannot be written: the folder %1 cannot be made</source>
        <translation>lässt sich nicht schreiben: der Ordner %1 lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>The folder %1 cannot be written to (%2).</source>
        <translation>In den Ordner %1 lässt sich nicht schreiben (%2).</translation>
    </message>
    <message>
        <source>SITE lies in the folder of the static files (%1).</source>
        <translation>SITE liegt im Ordner der statischen Dateien (%1).</translation>
    </message>
    <message>
        <source>SITE contains the folder of the static files (%1).</source>
        <translation>SITE enthält den Ordner der statischen Dateien (%1).</translation>
    </message>
    <message>
        <source>cannot be removed: %1 is a link that leads out of the site</source>
        <translation>lässt sich nicht entfernen: %1 ist ein Verweis, der aus der Website führt</translation>
    </message>
    <message>
        <source>cannot be removed from %1 (%2)</source>
        <translation>lässt sich nicht aus %1 entfernen (%2)</translation>
    </message>
    <message>
        <source>SITE was not made by this program, and there is something in it (%1).</source>
        <translation>SITE stammt nicht von diesem Programm und ist nicht leer (%1).</translation>
    </message>
    <message>
        <source>This would be replaced: %1.</source>
        <translation>Ersetzt würde: %1.</translation>
    </message>
    <message>
        <source>--force publishes there all the same.</source>
        <translation>--force veröffentlicht trotzdem.</translation>
    </message>
    <message>
        <source>Another instance publishes into SITE (%1).</source>
        <translation>Eine andere Instanz veröffentlicht gerade in SITE (%1).</translation>
    </message>
</context>
<context>
    <name>SvgGuard</name>
    <message>
        <source>has the encoding %1</source>
        <translation>sie in %1 kodiert ist</translation>
    </message>
    <message>
        <source>has a document type (DTD)</source>
        <translation>es einen Dokumenttyp (DTD) hat</translation>
    </message>
    <message>
        <source>refers to a style sheet elsewhere</source>
        <translation>es auf ein fremdes Stylesheet verweist</translation>
    </message>
    <message>
        <source>is not an SVG picture: its first element is not svg in the SVG namespace</source>
        <translation>ist kein SVG-Bild: sein erstes Element ist nicht svg im SVG-Namensraum</translation>
    </message>
    <message>
        <source>is not published, because it %1 (line %2)</source>
        <translation>wird nicht veröffentlicht, weil %1 (Zeile %2)</translation>
    </message>
    <message>
        <source>uses its own parts too often</source>
        <translation>verwendet seine eigenen Teile zu oft</translation>
    </message>
    <message>
        <source>is not a well-formed SVG picture (line %1: %2)</source>
        <translation>ist kein wohlgeformtes SVG-Bild (Zeile %1: %2)</translation>
    </message>
    <message>
        <source>holds an element &quot;%1&quot;</source>
        <translation>es ein Element „%1“ enthält</translation>
    </message>
    <message>
        <source>holds an attribute &quot;%1&quot;</source>
        <translation>es ein Attribut „%1“ enthält</translation>
    </message>
    <message>
        <source>animates the attribute &quot;%1&quot;</source>
        <translation>es das Attribut „%1“ animiert</translation>
    </message>
    <message>
        <source>holds a script in an attribute &quot;%1&quot;</source>
        <translation>es ein Skript in einem Attribut „%1“ enthält</translation>
    </message>
    <message>
        <source>refers to &quot;%1&quot;</source>
        <translation>es auf „%1“ verweist</translation>
    </message>
    <message>
        <source>has a style with &quot;%1&quot;</source>
        <translation>es einen Stil mit „%1“ hat</translation>
    </message>
    <message>
        <source>has a style that refers to &quot;%1&quot;</source>
        <translation>es einen Stil hat, der auf „%1“ verweist</translation>
    </message>
</context>
<context>
    <name>Watch</name>
    <message>
        <source>Copied: %1</source>
        <translation>Kopiert: %1</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>Entfernt: %1</translation>
    </message>
    <message>
        <source>Imported: %1</source>
        <translation>Importiert: %1</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Geschrieben: %1</translation>
    </message>
    <message>
        <source>Watching %1, Ctrl-C ends</source>
        <translation>%1 wird beobachtet, Strg-C beendet</translation>
    </message>
    <message numerus="yes">
        <source>Changes of %n file(s) may be missed: %1</source>
        <translation>
            <numerusform>Änderungen an %n Datei können entgehen: %1</numerusform>
            <numerusform>Änderungen an %n Dateien können entgehen: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ProjectFileLocker</name>
    <message>
        <source>Project %1 already opened !</source>
        <translation>Das Projekt %1 ist schon geöffnet!</translation>
    </message>
    <message>
        <source>Lock failed on &apos;%1&apos; : error=%2  folder=%3 machinehost=%4</source>
        <translation>Sperren von „%1“ gescheitert: Fehler=%2  Ordner=%3 Rechner=%4</translation>
    </message>
    <message>
        <source>The lock file could not be created, for lack of permissions in the parent directory.</source>
        <translation>Die Sperrdatei ließ sich nicht anlegen, weil im Ordner die Rechte fehlen.</translation>
    </message>
    <message>
        <source>Another error happened, for instance a full partition prevented writing out the lock file</source>
        <translation>Ein anderer Fehler trat auf; vielleicht ließ eine volle Partition die Sperrdatei nicht schreiben</translation>
    </message>
</context>
</TS>
