<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CommandLine</name>
    <message>
        <source>Show this help.</source>
        <translation>Affiche cette aide.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Affiche la version.</translation>
    </message>
    <message>
        <source>Print nothing but failures.</source>
        <translation>N’affiche que les échecs.</translation>
    </message>
    <message>
        <source>Show the way that each failure took.</source>
        <translation>Montre le chemin de chaque échec.</translation>
    </message>
    <message>
        <source>Speak this language (%1); else the system&apos;s.</source>
        <translation>Parle cette langue (%1) ; sinon celle du système.</translation>
    </message>
    <message>
        <source>code</source>
        <translation>code</translation>
    </message>
    <message>
        <source>Two folders are needed, PROJECT and SITE; %1 given.</source>
        <translation>Il faut deux dossiers, PROJECT et SITE ; reçu : %1.</translation>
    </message>
    <message>
        <source>The name of a folder is empty.</source>
        <translation>Le nom d’un dossier est vide.</translation>
    </message>
    <message>
        <source>Go on and publish what changes in PROJECT, until Ctrl-C.</source>
        <translation>Continue et publie ce qui change dans PROJECT, jusqu’à Ctrl-C.</translation>
    </message>
    <message>
        <source>Publish into a SITE that this program has not made, or that shows another project. What it replaces there is lost.</source>
        <translation>Publie dans un SITE que ce programme n’a pas créé, ou qui montre un autre projet. Ce qui y est remplacé est perdu.</translation>
    </message>
    <message>
        <source>Publish photographs that break off; what is missing is grey.</source>
        <translation>Publie aussi les photographies incomplètes ; ce qui manque est gris.</translation>
    </message>
    <message>
        <source>Import so many photographs at a time; else as many as the processor works on.</source>
        <translation>Importe ce nombre de photographies à la fois ; sinon autant que le processeur en traite.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>nombre</translation>
    </message>
    <message>
        <source>Folder that holds photos/, or a plain folder of photographs (JPEG, PNG, GIF, SVG, WebP, TIFF).</source>
        <translation>Dossier qui contient photos/, ou simple dossier de photographies (JPEG, PNG, GIF, SVG, WebP, TIFF).</translation>
    </message>
    <message>
        <source>The number of jobs &quot;%1&quot; is not a whole number from 1 to 256.</source>
        <translation>Le nombre de tâches « %1 » n’est pas un nombre entier de 1 à 256.</translation>
    </message>
    <message>
        <source>Print what happens for other programs: a JSON object in each line.</source>
        <translation>Affiche ce qui se passe pour d’autres programmes : un objet JSON par ligne.</translation>
    </message>
    <message>
        <source>One folder is needed after &quot;%1&quot;; %2 given.</source>
        <translation>Il faut un dossier après « %1 » ; reçu : %2.</translation>
    </message>
    <message>
        <source>Folder of the web site, made when missing.</source>
        <translation>Dossier du site web, créé s’il manque.</translation>
    </message>
    <message>
        <source>Imports the photographs of a shop project upright into a web site and makes the pages that show them.

  shop-publisher PROJECT SITE    publishes the project
  shop-publisher check PROJECT   says everything that is wrong in it, writes nothing
  shop-publisher init FOLDER     begins a project: a shop.json, and a README beside it

Careful: in SITE the program replaces its pages and pictures, removes those whose photographs have gone, and makes static/ equal to that of PROJECT: whatever else is in there is lost. A SITE that it has not made is refused.

Exit code: 0 all imported, 1 some failed, 2 bad usage, 130 stopped by Ctrl-C,
3 the project is open in another instance.</source>
        <translation>Importe, redressées, les photographies d’une boutique dans un site web et fait les pages qui les montrent.

  shop-publisher PROJECT SITE    publie le projet
  shop-publisher check PROJECT   dit tout ce qui ne va pas, n’écrit rien
  shop-publisher init FOLDER     commence un projet : un shop.json, et un README à côté

Attention : dans SITE, le programme remplace ses pages et ses images, enlève celles dont les photographies ont disparu, et rend static/ égal à celui de PROJECT : tout ce qui s’y trouve d’autre est perdu. Un SITE qu’il n’a pas créé est refusé.

Code de retour : 0 tout est importé, 1 il y a des échecs, 2 mauvais emploi, 130 arrêté par Ctrl-C,
3 le projet est ouvert dans une autre instance.</translation>
    </message>
</context>
<context>
    <name>Console</name>
    <message numerus="yes">
        <source>%n failure(s):</source>
        <translation>
            <numerusform>%n échec :</numerusform>
            <numerusform>%n échecs :</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ContactSheet</name>
    <message numerus="yes">
        <source>%n photograph(s)</source>
        <translation>
            <numerusform>%n photographie</numerusform>
            <numerusform>%n photographies</numerusform>
        </translation>
    </message>
    <message>
        <source>There is nothing to show yet.</source>
        <translation>Il n’y a encore rien à montrer.</translation>
    </message>
    <message>
        <source>To the shop</source>
        <translation>Vers la boutique</translation>
    </message>
</context>
<context>
    <name>Languages</name>
    <message>
        <source>en</source>
        <extracomment>The code of the language of this translation.</extracomment>
        <translation>fr</translation>
    </message>
</context>
<context>
    <name>PageTexts</name>
    <message>
        <source>VAT</source>
        <translation>TVA</translation>
    </message>
    <message>
        <source>incl. VAT</source>
        <translation>TTC</translation>
    </message>
    <message>
        <source>net</source>
        <translation>HT</translation>
    </message>
    <message>
        <source>Prices in %1, with the VAT of %2.</source>
        <translation>Prix en %1, TVA applicable : %2.</translation>
    </message>
    <message>
        <source>All photographs</source>
        <translation>Toutes les photographies</translation>
    </message>
    <message>
        <source>VAT rates of %1.</source>
        <translation>Taux de TVA du %1.</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Commander</translation>
    </message>
    <message>
        <source>Imprint</source>
        <translation>Mentions légales</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Langues</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Page %1 sur %2</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Page précédente</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Page suivante</translation>
    </message>
</context>
<context>
    <name>PictureCheck</name>
    <message>
        <source>cannot be opened (%1)</source>
        <translation>ne peut pas être ouvert (%1)</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>est vide</translation>
    </message>
    <message>
        <source>holds a picture of the kind %1, which does not go with its name</source>
        <translation>contient une image du type %1, qui ne va pas avec son nom</translation>
    </message>
    <message>
        <source>cannot be decoded (%1)</source>
        <translation>ne peut pas être décodé (%1)</translation>
    </message>
    <message>
        <source>cannot be read: the SVG plugin of Qt is not installed</source>
        <translation>ne peut pas être lu : le greffon SVG de Qt n’est pas installé</translation>
    </message>
    <message>
        <source>%1 × %2 pixels: larger than %3 million pixels</source>
        <translation>%1 × %2 pixels : plus de %3 millions de pixels</translation>
    </message>
    <message>
        <source>is an SVG picture of more than %1 MiB</source>
        <translation>est une image SVG de plus de %1 Mio</translation>
    </message>
    <message>
        <source>cannot be decoded (it is not a JPEG, PNG, GIF, SVG, WebP or TIFF picture)</source>
        <translation>ne peut pas être décodé (ce n’est pas une image JPEG, PNG, GIF, SVG, WebP ou TIFF)</translation>
    </message>
    <message>
        <source>holds a picture of the kind %1, which is not published</source>
        <translation>contient une image de type %1, qui n’est pas publiée</translation>
    </message>
</context>
<context>
    <name>PictureImporter</name>
    <message>
        <source>%1: FAILED, %2</source>
        <translation>%1 : ÉCHEC, %2</translation>
    </message>
    <message>
        <source>is a link into the site itself</source>
        <translation>est un lien vers le site lui-même</translation>
    </message>
    <message>
        <source>cannot be decoded (its content is damaged)</source>
        <translation>ne peut pas être décodé (son contenu est endommagé)</translation>
    </message>
    <message>
        <source>cannot be saved in the site, where %1 are free; nothing more was published</source>
        <translation>ne peut pas être enregistré dans le site, où il reste %1 ; rien de plus n’a été publié</translation>
    </message>
    <message>
        <source>breaks off before its end (--accept-truncated publishes it all the same)</source>
        <translation>s’interrompt avant la fin (--accept-truncated publie quand même)</translation>
    </message>
    <message>
        <source>has more pixels than fit into memory</source>
        <translation>a plus de pixels que la mémoire n’en contient</translation>
    </message>
    <message>
        <source>has gone</source>
        <translation>a disparu</translation>
    </message>
    <message>
        <source>cannot be checked: there is no room in the folder for temporary files</source>
        <translation>ne peut pas être vérifié : il n’y a plus de place dans le dossier des fichiers temporaires</translation>
    </message>
</context>
<context>
    <name>Program</name>
    <message>
        <source>Try &apos;shop-publisher --help&apos; for more.</source>
        <translation>« shop-publisher --help » en dit plus.</translation>
    </message>
    <message numerus="yes">
        <source>Stopped: %1 of %n photograph(s) imported, no page written</source>
        <translation>
            <numerusform>Arrêté. Photographies importées : %1 sur %n ; aucune page écrite</numerusform>
            <numerusform>Arrêté. Photographies importées : %1 sur %n ; aucune page écrite</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photograph(s) imported: %2</source>
        <translation>
            <numerusform>Photographies importées : %1 sur %n. Page : %2</numerusform>
            <numerusform>Photographies importées : %1 sur %n. Page : %2</numerusform>
        </translation>
    </message>
    <message>
        <source>There are no texts in the language %1, only in: %2.</source>
        <translation>Il n’y a pas de textes dans la langue %1, seulement dans : %2.</translation>
    </message>
    <message>
        <source>There is no folder %1.</source>
        <translation>Il n’y a pas de dossier %1.</translation>
    </message>
    <message>
        <source>Shop: %1</source>
        <translation>Boutique : %1</translation>
    </message>
    <message>
        <source>No lock: the project&apos;s folder %1 cannot be written to</source>
        <translation>Pas de verrou : on ne peut pas écrire dans le dossier du projet %1</translation>
    </message>
    <message>
        <source>Not published, because of their kind: %1</source>
        <translation>Non publiés en raison de leur type : %1</translation>
    </message>
    <message>
        <source>Begun: %1. Read README.md there, put photographs into photos/, and try &apos;shop-publisher check&apos;.</source>
        <translation>Commencé : %1. Lisez-y README.md, mettez des photographies dans photos/ et essayez « shop-publisher check ».</translation>
    </message>
    <message>
        <source>Held by process %1 (%2) on %3</source>
        <translation>Détenu par le processus %1 (%2) sur %3</translation>
    </message>
    <message numerus="yes">
        <source>Nothing is wrong: %n photograph(s) can be published</source>
        <translation>
            <numerusform>Tout va bien : %n photographie peut être publiée</numerusform>
            <numerusform>Tout va bien : %n photographies peuvent être publiées</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 is there already, so nothing was written.</source>
        <translation>%1 existe déjà, rien n’a donc été écrit.</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Le dossier %1 ne peut pas être créé.</translation>
    </message>
    <message>
        <source>%1 cannot be written (%2).</source>
        <translation>%1 ne peut pas être écrit (%2).</translation>
    </message>
</context>
<context>
    <name>Project</name>
    <message>
        <source>is a link to a folder, which is not followed</source>
        <translation>est un lien vers un dossier, qui n’est pas suivi</translation>
    </message>
    <message>
        <source>is a link that leads nowhere</source>
        <translation>est un lien qui ne mène nulle part</translation>
    </message>
    <message>
        <source>is not a file</source>
        <translation>n’est pas un fichier</translation>
    </message>
    <message>
        <source>cannot be read (%1)</source>
        <translation>ne peut pas être lu (%1)</translation>
    </message>
    <message>
        <source>has a name that is not valid UTF-8; please rename it</source>
        <translation>a un nom qui n’est pas de l’UTF-8 valide ; veuillez le renommer</translation>
    </message>
    <message>
        <source>Photographs</source>
        <translation>Photographies</translation>
    </message>
    <message>
        <source>is a link that leads out of the static files</source>
        <translation>est un lien qui sort des fichiers statiques</translation>
    </message>
</context>
<context>
    <name>Publication</name>
    <message>
        <source>the shop is not written, because the photograph &quot;%1&quot; of one of its products could not be imported</source>
        <translation>la boutique n’est pas écrite, parce que la photographie « %1 » d’un de ses produits n’a pas pu être importée</translation>
    </message>
    <message>
        <source>there is no photograph, so nothing was published</source>
        <translation>il n’y a aucune photographie ; rien n’a été publié</translation>
    </message>
    <message>
        <source>SITE shows the photographs of another project, and none of these; --force replaces them</source>
        <translation>SITE montre les photographies d’un autre projet et aucune de celles-ci ; --force les remplace</translation>
    </message>
    <message>
        <source>leads into the site itself</source>
        <translation>mène dans le site lui-même</translation>
    </message>
    <message>
        <source>cannot be opened (%1)</source>
        <translation>ne peut pas être ouvert (%1)</translation>
    </message>
    <message>
        <source>cannot be copied (%1)</source>
        <translation>ne peut pas être copié (%1)</translation>
    </message>
</context>
<context>
    <name>ShopFile</name>
    <message>
        <source>is missing</source>
        <translation>manque</translation>
    </message>
    <message>
        <source>is no text</source>
        <translation>n’est pas un texte</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>est vide</translation>
    </message>
    <message>
        <source>has no text in &quot;%1&quot;</source>
        <translation>n’a pas de texte en « %1 »</translation>
    </message>
    <message>
        <source>is no text in &quot;%1&quot;</source>
        <translation>n’est pas un texte en « %1 »</translation>
    </message>
    <message>
        <source>is no list of languages</source>
        <translation>n’est pas une liste de langues</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no code of a language, such as &quot;fr&quot; or &quot;pt_BR&quot;</source>
        <translation>« %1 » n’est pas le code d’une langue, comme « fr » ou « pt_BR »</translation>
    </message>
    <message>
        <source>&quot;%1&quot; stands there twice</source>
        <translation>« %1 » y figure deux fois</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no code of a currency, such as &quot;EUR&quot;</source>
        <translation>« %1 » n’est pas le code d’une monnaie, comme « EUR »</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no country of the European Union whose tax rates are known, such as &quot;FR&quot;</source>
        <translation>« %1 » n’est pas un pays de l’Union européenne dont les taux de TVA sont connus, comme « FR »</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no family of the catalogue of web fonts</source>
        <translation>« %1 » n’est pas une famille du catalogue de polices web</translation>
    </message>
    <message>
        <source>is no list of products</source>
        <translation>n’est pas une liste de produits</translation>
    </message>
    <message>
        <source>is no object</source>
        <translation>n’est pas un objet</translation>
    </message>
    <message>
        <source>%1, product %2</source>
        <translation>%1, produit %2</translation>
    </message>
    <message>
        <source>%1, product %2 (%3)</source>
        <translation>%1, produit %2 (%3)</translation>
    </message>
    <message>
        <source>there is no photograph &quot;%1&quot;</source>
        <translation>il n’y a pas de photographie « %1 »</translation>
    </message>
    <message>
        <source>is no tax category: a number from 0 to 4</source>
        <translation>n’est pas une catégorie de taxe : un nombre de 0 à 4</translation>
    </message>
    <message>
        <source>is no number, such as 12.50</source>
        <translation>n’est pas un nombre, comme 12.50</translation>
    </message>
    <message>
        <source>is below zero</source>
        <translation>est inférieur à zéro</translation>
    </message>
    <message>
        <source>is too high for a price</source>
        <translation>est trop élevé pour un prix</translation>
    </message>
    <message>
        <source>%1 has no rate of the category %2</source>
        <translation>%1 n’a pas de taux de la catégorie %2</translation>
    </message>
    <message>
        <source>cannot be opened (%1)</source>
        <translation>ne peut pas être ouvert (%1)</translation>
    </message>
    <message>
        <source>is no valid JSON (line %1: %2)</source>
        <translation>n’est pas du JSON valide (ligne %1 : %2)</translation>
    </message>
    <message>
        <source>holds no object</source>
        <translation>ne contient pas d’objet</translation>
    </message>
    <message>
        <source>holds a control character (U+%1)</source>
        <translation>contient un caractère de commande (U+%1)</translation>
    </message>
    <message>
        <source>is neither true nor false</source>
        <translation>n’est ni true ni false</translation>
    </message>
    <message>
        <source>there is no file &quot;%1&quot; below static/</source>
        <translation>il n’y a pas de fichier « %1 » sous static/</translation>
    </message>
    <message>
        <source>has no &quot;date&quot; of the rates, such as &quot;2026-01-01&quot;</source>
        <translation>n’a pas de « date » des taux, comme « 2026-01-01 »</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no tax category: a number from 0 to 4</source>
        <translation>« %1 » n’est pas une catégorie de taxe : un nombre de 0 à 4</translation>
    </message>
    <message>
        <source>the rate of &quot;%1&quot; is no number from 0 to 100</source>
        <translation>le taux de « %1 » n’est pas un nombre de 0 à 100</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no opaque colour of CSS, such as &quot;#9c4a27&quot;</source>
        <translation>« %1 » n’est pas une couleur CSS opaque, comme « #9c4a27 »</translation>
    </message>
    <message>
        <source>is no picture that can be read</source>
        <translation>n’est pas une image qui puisse être lue</translation>
    </message>
    <message>
        <source>holds &quot;?&quot; or &quot;#&quot;</source>
        <translation>contient « ? » ou « # »</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of e-mail</source>
        <translation>« %1 » n’est pas une adresse électronique</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of the web, such as &quot;https://shop.example/&quot;</source>
        <translation>« %1 » n’est pas une adresse web, comme « https://shop.example/ »</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of e-mail or of the web</source>
        <translation>« %1 » n’est ni une adresse électronique ni une adresse web</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no weight of a font, such as &quot;400&quot;</source>
        <translation>« %1 » n’est pas une graisse de police, comme « 400 »</translation>
    </message>
    <message>
        <source>is no list of photographs</source>
        <translation>n’est pas une liste de photographies</translation>
    </message>
</context>
<context>
    <name>Site</name>
    <message>
        <source>SITE lies in the folder of the photographs (%1).</source>
        <translation>SITE se trouve dans le dossier des photographies (%1).</translation>
    </message>
    <message>
        <source>SITE contains the folder of the photographs (%1).</source>
        <translation>SITE contient le dossier des photographies (%1).</translation>
    </message>
    <message>
        <source>SITE lies in the project (%1).</source>
        <translation>SITE se trouve dans le projet (%1).</translation>
    </message>
    <message>
        <source>SITE contains the project (%1).</source>
        <translation>SITE contient le projet (%1).</translation>
    </message>
    <message>
        <source>SITE is not a folder (%1).</source>
        <translation>SITE n’est pas un dossier (%1).</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Le dossier %1 ne peut pas être créé.</translation>
    </message>
    <message>
        <source>cannot be written to %1 (%2)</source>
        <translation>ne peut pas être écrit dans %1 (%2)</translation>
    </message>
    <message>
        <source>cannot be written (%1)</source>
        <translation>ne peut pas être écrit (%1)</translation>
    </message>
    <message>
        <source>cannot be written: %1 is a link that leads out of the site</source>
        <translation>ne peut pas être écrit : %1 est un lien qui mène hors du site</translation>
    </message>
    <message>
        <source>cannot be written: the folder %1 cannot be made</source>
        <translation>ne peut pas être écrit : le dossier %1 ne peut pas être créé</translation>
    </message>
    <message>
        <source>The folder %1 cannot be written to (%2).</source>
        <translation>On ne peut pas écrire dans le dossier %1 (%2).</translation>
    </message>
    <message>
        <source>SITE lies in the folder of the static files (%1).</source>
        <translation>SITE se trouve dans le dossier des fichiers statiques (%1).</translation>
    </message>
    <message>
        <source>SITE contains the folder of the static files (%1).</source>
        <translation>SITE contient le dossier des fichiers statiques (%1).</translation>
    </message>
    <message>
        <source>cannot be removed: %1 is a link that leads out of the site</source>
        <translation>ne peut pas être retiré : %1 est un lien qui mène hors du site</translation>
    </message>
    <message>
        <source>cannot be removed from %1 (%2)</source>
        <translation>ne peut pas être retiré de %1 (%2)</translation>
    </message>
    <message>
        <source>SITE was not made by this program, and there is something in it (%1).</source>
        <translation>SITE n’a pas été créé par ce programme, et il n’est pas vide (%1).</translation>
    </message>
    <message>
        <source>This would be replaced: %1.</source>
        <translation>Serait remplacé : %1.</translation>
    </message>
    <message>
        <source>--force publishes there all the same.</source>
        <translation>--force publie quand même.</translation>
    </message>
    <message>
        <source>Another instance publishes into SITE (%1).</source>
        <translation>Une autre instance publie dans SITE (%1).</translation>
    </message>
</context>
<context>
    <name>SvgGuard</name>
    <message>
        <source>has the encoding %1</source>
        <translation>son codage est %1</translation>
    </message>
    <message>
        <source>has a document type (DTD)</source>
        <translation>elle a un type de document (DTD)</translation>
    </message>
    <message>
        <source>refers to a style sheet elsewhere</source>
        <translation>elle renvoie à une feuille de style extérieure</translation>
    </message>
    <message>
        <source>is not an SVG picture: its first element is not svg in the SVG namespace</source>
        <translation>n’est pas une image SVG : son premier élément n’est pas svg dans l’espace de noms SVG</translation>
    </message>
    <message>
        <source>is not published, because it %1 (line %2)</source>
        <translation>n’est pas publiée : %1 (ligne %2)</translation>
    </message>
    <message>
        <source>uses its own parts too often</source>
        <translation>utilise trop souvent ses propres parties</translation>
    </message>
    <message>
        <source>is not a well-formed SVG picture (line %1: %2)</source>
        <translation>n’est pas une image SVG bien formée (ligne %1 : %2)</translation>
    </message>
    <message>
        <source>holds an element &quot;%1&quot;</source>
        <translation>elle contient un élément « %1 »</translation>
    </message>
    <message>
        <source>holds an attribute &quot;%1&quot;</source>
        <translation>elle contient un attribut « %1 »</translation>
    </message>
    <message>
        <source>animates the attribute &quot;%1&quot;</source>
        <translation>elle anime l’attribut « %1 »</translation>
    </message>
    <message>
        <source>holds a script in an attribute &quot;%1&quot;</source>
        <translation>elle contient un script dans un attribut « %1 »</translation>
    </message>
    <message>
        <source>refers to &quot;%1&quot;</source>
        <translation>elle renvoie à « %1 »</translation>
    </message>
    <message>
        <source>has a style with &quot;%1&quot;</source>
        <translation>elle a un style avec « %1 »</translation>
    </message>
    <message>
        <source>has a style that refers to &quot;%1&quot;</source>
        <translation>elle a un style qui renvoie à « %1 »</translation>
    </message>
</context>
<context>
    <name>Watch</name>
    <message>
        <source>Copied: %1</source>
        <translation>Copié : %1</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>Retiré : %1</translation>
    </message>
    <message>
        <source>Imported: %1</source>
        <translation>Importé : %1</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Écrit : %1</translation>
    </message>
    <message>
        <source>Watching %1, Ctrl-C ends</source>
        <translation>%1 est surveillé, Ctrl-C termine</translation>
    </message>
    <message numerus="yes">
        <source>Changes of %n file(s) may be missed: %1</source>
        <translation>
            <numerusform>Les changements de %n fichier peuvent échapper : %1</numerusform>
            <numerusform>Les changements de %n fichiers peuvent échapper : %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ProjectFileLocker</name>
    <message>
        <source>Project %1 already opened !</source>
        <translation>Le projet %1 est déjà ouvert !</translation>
    </message>
    <message>
        <source>Lock failed on &apos;%1&apos; : error=%2  folder=%3 machinehost=%4</source>
        <translation>Échec du verrouillage de « %1 » : erreur=%2  dossier=%3 machine=%4</translation>
    </message>
    <message>
        <source>The lock file could not be created, for lack of permissions in the parent directory.</source>
        <translation>Le fichier de verrou n’a pas pu être créé, faute de droits dans le dossier parent.</translation>
    </message>
    <message>
        <source>Another error happened, for instance a full partition prevented writing out the lock file</source>
        <translation>Une autre erreur est survenue ; par exemple, une partition pleine a empêché d’écrire le fichier de verrou</translation>
    </message>
</context>
</TS>
