<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>improve</source>
        <translation>Améliorer</translation>
    </message>
    <message>
        <source>tone-changer</source>
        <translation>Changer le ton</translation>
    </message>
    <message>
        <source>reply</source>
        <translation>Répondre</translation>
    </message>
    <message>
        <source>translate</source>
        <translation>Traduire</translation>
    </message>
    <message>
        <source>more</source>
        <translation>Plus</translation>
    </message>
    <message>
        <source>quick-improve</source>
        <translation>Améliorer vite</translation>
    </message>
    <message>
        <source>check-grammar</source>
        <translation>Vérifier la grammaire</translation>
    </message>
    <message>
        <source>elevate</source>
        <translation>Plus soutenu</translation>
    </message>
    <message>
        <source>expand</source>
        <translation>Développer</translation>
    </message>
    <message>
        <source>clear</source>
        <translation>Plus clair</translation>
    </message>
    <message>
        <source>concise</source>
        <translation>Plus concis</translation>
    </message>
    <message>
        <source>emojify</source>
        <translation>Avec des émojis</translation>
    </message>
    <message>
        <source>friendly</source>
        <translation>Amical</translation>
    </message>
    <message>
        <source>happy</source>
        <translation>Joyeux</translation>
    </message>
    <message>
        <source>confident</source>
        <translation>Assuré</translation>
    </message>
    <message>
        <source>romantic</source>
        <translation>Romantique</translation>
    </message>
    <message>
        <source>sarcastic</source>
        <translation>Sarcastique</translation>
    </message>
    <message>
        <source>professional</source>
        <translation>Professionnel</translation>
    </message>
    <message>
        <source>witty</source>
        <translation>Spirituel</translation>
    </message>
    <message>
        <source>flirty</source>
        <translation>Charmeur</translation>
    </message>
    <message>
        <source>reply-msg-copy</source>
        <translation>Répondre au message</translation>
    </message>
    <message>
        <source>english</source>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>italian</source>
        <translation>Italien</translation>
    </message>
    <message>
        <source>french</source>
        <translation>Français</translation>
    </message>
    <message>
        <source>spanish</source>
        <translation>Espagnol</translation>
    </message>
    <message>
        <source>catalan</source>
        <translation>Catalan</translation>
    </message>
    <message>
        <source>german</source>
        <translation>Allemand</translation>
    </message>
    <message>
        <source>chinese</source>
        <translation>Chinois</translation>
    </message>
    <message>
        <source>japanese</source>
        <translation>Japonais</translation>
    </message>
    <message>
        <source>portuguese</source>
        <translation>Portugais</translation>
    </message>
    <message>
        <source>russian</source>
        <translation>Russe</translation>
    </message>
    <message>
        <source>greek</source>
        <translation>Grec</translation>
    </message>
    <message>
        <source>hindi</source>
        <translation>Hindi</translation>
    </message>
    <message>
        <source>arabic</source>
        <translation>Arabe</translation>
    </message>
    <message>
        <source>ukrainian</source>
        <translation>Ukrainien</translation>
    </message>
    <message>
        <source>korean</source>
        <translation>Coréen</translation>
    </message>
    <message>
        <source>polish</source>
        <translation>Polonais</translation>
    </message>
    <message>
        <source>hungarian</source>
        <translation>Hongrois</translation>
    </message>
    <message>
        <source>armenian</source>
        <translation>Arménien</translation>
    </message>
    <message>
        <source>croatian</source>
        <translation>Croate</translation>
    </message>
    <message>
        <source>thai</source>
        <translation>Thaï</translation>
    </message>
    <message>
        <source>malay</source>
        <translation>Malais</translation>
    </message>
    <message>
        <source>bengali</source>
        <translation>Bengali</translation>
    </message>
    <message>
        <source>vietnamese</source>
        <translation>Vietnamien</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>send-feedback</source>
        <translation>Envoyer un avis</translation>
    </message>
    <message>
        <source>share</source>
        <translation>Partager</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>Noter</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>reload</source>
        <translation>Reload</translation>
    </message>
    <message>
        <source>apply</source>
        <translation>Appliquer</translation>
    </message>
    <message>
        <source>Quillet could not write the text into the other application. It is on the clipboard, so you can paste it.</source>
        <translation>Quillet n’a pas pu écrire le texte dans l’autre application. Il est dans le presse-papiers : vous pouvez le coller.</translation>
    </message>
    <message>
        <source>Install Quillet</source>
        <translation>Installer Quillet</translation>
    </message>
    <message>
        <source>Quillet needs to be installed in the Applications folder.</source>
        <translation>Quillet doit être installé dans le dossier des applications.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installer</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Install Failed</source>
        <translation>Échec de l’installation</translation>
    </message>
    <message>
        <source>Could not copy Quillet to Applications: </source>
        <translation>Impossible de copier Quillet dans les applications : </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Open Quillet</source>
        <translation>Ouvrir Quillet</translation>
    </message>
    <message>
        <source>Send Feedback</source>
        <translation>Envoyer un avis</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Rechercher des mises à jour</translation>
    </message>
    <message>
        <source>No mail program could be opened. Please write to %1.</source>
        <translation>Aucun logiciel de messagerie n’a pu être ouvert. Écrivez à %1.</translation>
    </message>
    <message>
        <source>Your system&apos;s package manager keeps Quillet up to date, together with your other programs.</source>
        <translation>Le gestionnaire de paquets du système tient Quillet à jour avec vos autres programmes.</translation>
    </message>
    <message>
        <source>New versions of Quillet are published at %1.</source>
        <translation>Les nouvelles versions de Quillet sont publiées sur %1.</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>Non configuré</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Vérification…</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Chargement…</translation>
    </message>
    <message>
        <source>All looks great!</source>
        <translation>Tout va bien !</translation>
    </message>
    <message>
        <source>Beta test</source>
        <translation>Test bêta</translation>
    </message>
    <message>
        <source>Quillet is ready to be used
across all your favourite apps</source>
        <translation>Quillet est prêt à l’emploi
dans toutes vos applications favorites</translation>
    </message>
    <message>
        <source>Configure Quillet</source>
        <translation>Configurer Quillet</translation>
    </message>
    <message>
        <source>Quillet Status</source>
        <translation>État de Quillet</translation>
    </message>
    <message>
        <source>Premium Status</source>
        <translation>État premium</translation>
    </message>
    <message>
        <source>You have full access to all AI features.</source>
        <translation>Vous avez accès à toutes les fonctions d’IA.</translation>
    </message>
    <message>
        <source>Open Accessibility Settings</source>
        <translation>Ouvrir les réglages d’accessibilité</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>A quill turning a draft into clear text</source>
        <translation>Une plume qui transforme un brouillon en texte clair</translation>
    </message>
    <message>
        <source>Welcome to Quillet</source>
        <translation>Bienvenue dans Quillet</translation>
    </message>
    <message>
        <source>Set up you Quillet in a few easy steps to start communicating with confidence</source>
        <translation>Configurez Quillet en quelques étapes simples et communiquez en toute confiance</translation>
    </message>
    <message>
        <source>• Open Accessibility Settings
• Toggle Quillet
• Come back here</source>
        <translation>• Ouvrez les réglages d’accessibilité
• Activez Quillet
• Revenez ici</translation>
    </message>
    <message>
        <source>First turn on the switch beside Quillet in the accessibility settings. Then use the Quillet button at the top right of any text field.</source>
        <translation>Activez d’abord l’interrupteur à côté de Quillet dans les réglages d’accessibilité. Utilisez ensuite le bouton de Quillet, en haut à droite de chaque champ de texte.</translation>
    </message>
    <message>
        <source>Quillet is installed! Now you can try it!</source>
        <translation>Quillet est installé ! Vous pouvez l’essayer !</translation>
    </message>
    <message>
        <source>Type something below, then try Quillet&apos;s features.</source>
        <translation>Écrivez quelque chose ci-dessous, puis essayez les fonctions de Quillet.</translation>
    </message>
    <message>
        <source>Quillet is ready</source>
        <translation>Quillet est prêt</translation>
    </message>
    <message>
        <source>Great job!</source>
        <translation>Bravo !</translation>
    </message>
    <message>
        <source>Quillet is ready to go. Start communicating with confidence in all your favourite apps!</source>
        <translation>Quillet est prêt. Communiquez en toute confiance dans toutes vos applications favorites !</translation>
    </message>
    <message>
        <source>Text to try Quillet on</source>
        <translation>Texte pour essayer Quillet</translation>
    </message>
    <message>
        <source>There is no text in this input yet. Write something, then choose the command again.</source>
        <translation>Ce champ ne contient pas encore de texte. Écrivez quelque chose, puis choisissez de nouveau la commande.</translation>
    </message>
    <message>
        <source>Message from Quillet</source>
        <translation>Message de Quillet</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Its icon in the tray opens this window again, and ends Quillet.</source>
        <translation>Quillet continue en arrière-plan. Son icône dans la barre rouvre cette fenêtre et permet de quitter Quillet.</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Start Quillet again to open this window.</source>
        <translation>Quillet continue en arrière-plan. Lancez de nouveau Quillet pour ouvrir cette fenêtre.</translation>
    </message>
    <message>
        <source>Bring Back the Former Clipboard</source>
        <translation>Rétablir le presse-papiers précédent</translation>
    </message>
    <message>
        <source>Put back what was there</source>
        <translation>Rétablir le texte précédent</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Écrit</translation>
    </message>
    <message>
        <source>Written; the program changed %1 characters</source>
        <translation>Écrit ; caractères modifiés par le programme : %1</translation>
    </message>
    <message>
        <source>Not written</source>
        <translation>Non écrit</translation>
    </message>
    <message>
        <source>Not written; the text is on the clipboard</source>
        <translation>Non écrit ; le texte est dans le presse-papiers</translation>
    </message>
    <message>
        <source>What has changed</source>
        <translation>Ce qui a changé</translation>
    </message>
    <message>
        <source>Click to take this change back</source>
        <translation>Cliquez pour annuler ce changement</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Changements</translation>
    </message>
    <message>
        <source>Show what has changed (Ctrl+D)</source>
        <translation>Montrer ce qui a changé (Ctrl+D)</translation>
    </message>
    <message>
        <source>Nothing has changed.</source>
        <translation>Rien n’a changé.</translation>
    </message>
    <message>
        <source>%1 changes. Ctrl+D shows them.</source>
        <translation>Changements : %1. Ctrl+D les montre.</translation>
    </message>
    <message>
        <source>Quillet Settings</source>
        <translation>Réglages de Quillet</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Autorisation</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Modifier…</translation>
    </message>
    <message>
        <source>Change the permission</source>
        <translation>Modifier l’autorisation</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Raccourci</translation>
    </message>
    <message>
        <source>Opens the commands for the input that you are in, or for what is selected in it.</source>
        <translation>Ouvre les commandes pour le champ où vous êtes, ou pour ce qui y est sélectionné.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucun</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Pas de raccourci</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Démarrage</translation>
    </message>
    <message>
        <source>Start Quillet when I log in, without a window</source>
        <translation>Lancer Quillet à l’ouverture de la session, sans fenêtre</translation>
    </message>
    <message>
        <source>Language model</source>
        <translation>Modèle de langue</translation>
    </message>
    <message>
        <source>Without one, Quillet corrects and improves texts on this machine. For the other commands, name a server that speaks the chat completions interface.</source>
        <translation>Sans modèle, Quillet corrige et améliore les textes sur cet ordinateur. Pour les autres commandes, indiquez un serveur doté de l’interface de réponses de chat.</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modèle</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Clé</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programmes</translation>
    </message>
    <message>
        <source>Quillet stays out of these. The menu of its button, with the other mouse button, adds one.</source>
        <translation>Quillet n’intervient pas dans ceux-ci. Le menu de son bouton, avec l’autre bouton de la souris, en ajoute un.</translation>
    </message>
    <message>
        <source>Programs that Quillet stays out of</source>
        <translation>Programmes où Quillet n’intervient pas</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>What is recorded</source>
        <translation>Ce qui est enregistré</translation>
    </message>
    <message>
        <source>That you have opened the wizard, clicked the button, run a command and which one, and applied a result. Never a text, nor the name of a program.</source>
        <translation>Que vous avez ouvert l’assistant, cliqué sur le bouton, lancé une commande (et laquelle) et appliqué un résultat. Jamais un texte, ni le nom d’un programme.</translation>
    </message>
    <message>
        <source>Quillet may read and write the inputs of your programs.</source>
        <translation>Quillet peut lire et écrire dans les champs de vos programmes.</translation>
    </message>
    <message>
        <source>Quillet may not see your programs.</source>
        <translation>Quillet ne peut pas voir vos programmes.</translation>
    </message>
    <message>
        <source>These keys are not free: another program has them, or the system does not hand them out. Press others.</source>
        <translation>Ces touches ne sont pas libres : un autre programme les utilise, ou le système ne les cède pas. Appuyez sur d’autres.</translation>
    </message>
    <message>
        <source>It will be copied to %1.</source>
        <translation>Il sera copié dans %1.</translation>
    </message>
    <message>
        <source>Quillet can start when you log in, in the background, so that its button is there at once. You find this in the settings too.</source>
        <translation>Quillet peut démarrer en arrière-plan à l’ouverture de la session, pour que son bouton soit là tout de suite. Vous le trouverez aussi dans les réglages.</translation>
    </message>
    <message>
        <source>Start at Login</source>
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>Only the selection</source>
        <translation>Seulement la sélection</translation>
    </message>
    <message>
        <source>Not in %1</source>
        <translation>Pas dans %1</translation>
    </message>
    <message>
        <source>The keyboard went to another input meanwhile: some of the text may have gone there.</source>
        <translation>Le clavier est passé entre-temps à un autre champ : une partie du texte a pu y aller.</translation>
    </message>
    <message>
        <source>Look at your text: a part of it may have changed.</source>
        <translation>Regardez votre texte : une partie a pu changer.</translation>
    </message>
    <message>
        <source>Quillet could not write into the other application.</source>
        <translation>Quillet n’a pas pu écrire dans l’autre application.</translation>
    </message>
    <message>
        <source>Works in some programs</source>
        <translation>Fonctionne dans certains programmes</translation>
    </message>
    <message>
        <source>The writing service could not be asked, or said nothing</source>
        <translation>Le service d’écriture n’a pas pu être interrogé ou n’a rien répondu</translation>
    </message>
    <message>
        <source>%1. Your text is unchanged. Press &quot;reload&quot; to try again.</source>
        <translation>%1. Votre texte est inchangé. Appuyez sur « Reload » pour réessayer.</translation>
    </message>
    <message>
        <source>Written by %1</source>
        <translation>Écrit par %1</translation>
    </message>
    <message>
        <source>%1 still shows Quillet only its window, because it was started before its switch was turned on, or not from the menu. Quit it and start it from the menu.</source>
        <translation>%1 ne montre toujours à Quillet que sa fenêtre, car il a été lancé avant l’activation de son option ou hors du menu. Quittez-le et lancez-le depuis le menu.</translation>
    </message>
    <message>
        <source>%1 shows Quillet only its window. A switch in its menu entry lets Quillet see the texts that you write in it.</source>
        <translation>%1 ne montre à Quillet que sa fenêtre. Une option dans son entrée de menu permet à Quillet de voir les textes que vous y écrivez.</translation>
    </message>
    <message>
        <source>Turn on for %1</source>
        <translation>Activer pour %1</translation>
    </message>
    <message>
        <source>%1 shows its texts from its next start on. The settings take this back.</source>
        <translation>%1 montrera ses textes à partir de son prochain lancement. Les réglages annulent cela.</translation>
    </message>
    <message>
        <source>Start again when I quit it</source>
        <translation>Relancer quand je le quitte</translation>
    </message>
    <message>
        <source>%1 was not started again. Start it from the menu.</source>
        <translation>%1 n’a pas été relancé. Lancez-le depuis le menu.</translation>
    </message>
    <message>
        <source>These show their texts because Quillet has turned on a switch in their menu entry.</source>
        <translation>Ceux-ci montrent leurs textes parce que Quillet a activé une option dans leur entrée de menu.</translation>
    </message>
    <message>
        <source>Programs whose switch is on</source>
        <translation>Programmes dont l’option est activée</translation>
    </message>
    <message>
        <source>Turn off</source>
        <translation>Désactiver</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Session</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>type %1</source>
        <translation>type %1</translation>
    </message>
    <message>
        <source>type %1, desktop %2</source>
        <translation>type %1, bureau %2</translation>
    </message>
    <message>
        <source>; no X11 display answers</source>
        <translation>; aucun écran X11 ne répond</translation>
    </message>
    <message>
        <source>Start Quillet in a graphical session. On a Wayland desktop, install its X11 server (the package xwayland).</source>
        <translation>Lancez Quillet dans une session graphique. Sous Wayland, installez son serveur X11 (le paquet xwayland).</translation>
    </message>
    <message>
        <source>; Quillet works in programs that run on its X11 server</source>
        <translation>; Quillet fonctionne dans les programmes qui utilisent son serveur X11</translation>
    </message>
    <message>
        <source>Choose an X11 session when you log in to use Quillet everywhere.</source>
        <translation>Choisissez une session X11 à la connexion pour utiliser Quillet partout.</translation>
    </message>
    <message>
        <source>Window manager</source>
        <translation>Gestionnaire de fenêtres</translation>
    </message>
    <message>
        <source>the compositor of the session</source>
        <translation>le compositeur de la session</translation>
    </message>
    <message>
        <source>none</source>
        <translation>aucun</translation>
    </message>
    <message>
        <source>Start a window manager: without one, windows are not told apart.</source>
        <translation>Lancez un gestionnaire de fenêtres : sans lui, les fenêtres ne se distinguent pas.</translation>
    </message>
    <message>
        <source>%1 does not follow %2</source>
        <translation>%1 ne respecte pas %2</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Zone de notification</translation>
    </message>
    <message>
        <source>present</source>
        <translation>présent</translation>
    </message>
    <message>
        <source>Start Quillet a second time to bring back its window.</source>
        <translation>Lancez Quillet une seconde fois pour retrouver sa fenêtre.</translation>
    </message>
    <message>
        <source>Accessibility service</source>
        <translation>Service d’accessibilité</translation>
    </message>
    <message>
        <source>there is no session bus</source>
        <translation>il n’y a pas de bus de session</translation>
    </message>
    <message>
        <source>Start Quillet in a desktop session, or with dbus-run-session.</source>
        <translation>Lancez Quillet dans une session de bureau, ou avec dbus-run-session.</translation>
    </message>
    <message>
        <source>it is not installed or does not answer</source>
        <translation>il n’est pas installé ou ne répond pas</translation>
    </message>
    <message>
        <source>Install the package at-spi2-core and log in again.</source>
        <translation>Installez le paquet at-spi2-core et reconnectez-vous.</translation>
    </message>
    <message>
        <source>it is switched off</source>
        <translation>il est désactivé</translation>
    </message>
    <message>
        <source>Start Quillet: it switches the service on.</source>
        <translation>Lancez Quillet : il active le service.</translation>
    </message>
    <message>
        <source>it answers and is switched on</source>
        <translation>il répond et est activé</translation>
    </message>
    <message>
        <source>given</source>
        <translation>accordée</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>non accordée</translation>
    </message>
    <message>
        <source>Run &quot;quillet --setup&quot; and follow the wizard.</source>
        <translation>Exécutez « quillet --setup » et suivez l’assistant.</translation>
    </message>
    <message>
        <source>%1 shows only its windows</source>
        <translation>%1 ne montre que ses fenêtres</translation>
    </message>
    <message>
        <source>%1 shows nothing</source>
        <translation>%1 ne montre rien</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Start the program again while Quillet has its permission.</source>
        <translation>Relancez le programme pendant que Quillet a son autorisation.</translation>
    </message>
    <message>
        <source>these show their text: %1</source>
        <translation>ceux-ci montrent leur texte : %1</translation>
    </message>
    <message>
        <source>Typing</source>
        <translation>Saisie</translation>
    </message>
    <message>
        <source>every character can be typed</source>
        <translation>tous les caractères peuvent être saisis</translation>
    </message>
    <message>
        <source>the display lacks %1</source>
        <translation>il manque %1 à l’écran</translation>
    </message>
    <message>
        <source>there is no display</source>
        <translation>il n’y a pas d’écran</translation>
    </message>
    <message>
        <source>Without it Quillet cannot write into browsers and programs built on them.</source>
        <translation>Sans cela, Quillet ne peut pas écrire dans les navigateurs et les programmes qui en dérivent.</translation>
    </message>
    <message>
        <source>Free keys for characters that the layout does not have: %1</source>
        <translation>Touches libres pour les caractères absents de la disposition : %1</translation>
    </message>
    <message>
        <source>Choose fewer keyboard layouts at a time.</source>
        <translation>Choisissez moins de dispositions de clavier à la fois.</translation>
    </message>
    <message>
        <source>Writing backend</source>
        <translation>Service d’écriture</translation>
    </message>
    <message>
        <source>Install Quillet again: quillet-backend belongs beside it.</source>
        <translation>Réinstallez Quillet : quillet-backend doit se trouver à côté.</translation>
    </message>
    <message>
        <source>Quillet cannot do its job here yet.</source>
        <translation>Quillet ne peut pas encore faire son travail ici.</translation>
    </message>
    <message>
        <source>Quillet can do its job here.</source>
        <translation>Quillet peut faire son travail ici.</translation>
    </message>
    <message>
        <source>Use the language model on this computer?</source>
        <translation>Utiliser le modèle de langage de cet ordinateur ?</translation>
    </message>
    <message>
        <source>The server at %1, run by the user "%2", offers the model "%3". With it Quillet can do more. The texts that you use a command on are then sent to this server; without it they stay with Quillet.</source>
        <translation>Le serveur à l’adresse %1, lancé par l’utilisateur « %2 », propose le modèle « %3 ». Avec lui, Quillet peut faire davantage. Les textes auxquels vous appliquez une commande lui sont alors envoyés ; sans lui, ils restent dans Quillet.</translation>
    </message>
    <message>
        <source>Your answer is kept. You can change it in the settings.</source>
        <translation>Votre réponse est conservée. Vous pouvez la modifier dans les paramètres.</translation>
    </message>
    <message>
        <source>Use it</source>
        <translation>L’utiliser</translation>
    </message>
    <message>
        <source>Stay offline</source>
        <translation>Rester hors ligne</translation>
    </message>
    <message>
        <source>Ask later</source>
        <translation>Demander plus tard</translation>
    </message>
    <message>
        <source>Your answer could not be stored.</source>
        <translation>Votre réponse n’a pas pu être enregistrée.</translation>
    </message>
    <message>
        <source>The menu entry of this program cannot be read.</source>
        <translation>L’entrée de menu de ce programme ne peut pas être lue.</translation>
    </message>
    <message>
        <source>The menu entry could not be written: %1.</source>
        <translation>L’entrée de menu n’a pas pu être écrite : %1.</translation>
    </message>
    <message>
        <source>The menu entry could not be removed: %1.</source>
        <translation>L’entrée de menu n’a pas pu être supprimée : %1.</translation>
    </message>
    <message>
        <source>This application shows Quillet only its window: quit it and start it with the option --force-renderer-accessibility.</source>
        <translation>Cette application ne montre à Quillet que sa fenêtre : quittez-la et lancez-la avec l’option --force-renderer-accessibility.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Accessibilité</translation>
    </message>
    <message>
        <source>Applications in this list may see which text field you are working in, and read and replace the text in it. Passwords are never read.</source>
        <translation>Les applications de cette liste peuvent voir dans quel champ de texte vous travaillez, et lire et remplacer son texte. Les mots de passe ne sont jamais lus.</translation>
    </message>
    <message>
        <source>The accessibility service of this desktop is not running, so this permission has no effect. Install the package at-spi2-core and log in again.</source>
        <translation>Le service d’accessibilité de ce bureau ne fonctionne pas, cette autorisation reste donc sans effet. Installez le paquet at-spi2-core et reconnectez-vous.</translation>
    </message>
    <message>
        <source>Off. Quillet does not see other applications.</source>
        <translation>Désactivé. Quillet ne voit pas les autres applications.</translation>
    </message>
    <message>
        <source>On. Connecting to the accessibility service…</source>
        <translation>Activé. Connexion au service d’accessibilité…</translation>
    </message>
    <message>
        <source>On, but accessibility is switched off for this desktop. Switch this off and on again.</source>
        <translation>Activé, mais l’accessibilité est désactivée sur ce bureau. Désactivez puis réactivez cet interrupteur.</translation>
    </message>
    <message>
        <source>On. Applications that were started before may have to be started again.</source>
        <translation>Activé. Les applications déjà lancées devront peut-être être redémarrées.</translation>
    </message>
    <message>
        <source>In this Wayland session Quillet only works in programs that run on X11: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>Dans cette session Wayland, Quillet ne fonctionne que dans les programmes qui utilisent X11 : choisissez une session X11 à la connexion, et il fonctionnera dans tous.</translation>
    </message>
    <message>
        <source>This Wayland session does not tell Quillet where the windows of other programs are: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>Cette session Wayland n’indique pas à Quillet où sont les fenêtres des autres programmes : choisissez une session X11 à la connexion, et il fonctionnera dans tous.</translation>
    </message>
    <message>
        <source>The compositor no longer tells Quillet where windows are: start Quillet again, and if that does not help, log out and in.</source>
        <translation>Le compositeur n’indique plus à Quillet où sont les fenêtres : relancez Quillet et, si cela ne suffit pas, déconnectez-vous puis reconnectez-vous.</translation>
    </message>
    <message>
        <source>Does Quillet work here?</source>
        <translation>Quillet fonctionne-t-il ici ?</translation>
    </message>
    <message>
        <source>Copy for a Bug Report</source>
        <translation>Copier pour un rapport de bogue</translation>
    </message>
    <message>
        <source>Examine</source>
        <translation>Examiner</translation>
    </message>
    <message>
        <source>Looks at this desktop and its programs</source>
        <translation>Examine ce bureau et ses programmes</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Examen en cours…</translation>
    </message>
    <message>
        <source>The examination failed.</source>
        <translation>L’examen a échoué.</translation>
    </message>
    <message>
        <source>Use %1, found on this computer</source>
        <translation>Utiliser %1, trouvé sur cet ordinateur</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Résultat</translation>
    </message>
    <message>
        <source>Icon of Quillet</source>
        <translation>Icône de Quillet</translation>
    </message>
    <message>
        <source>Try It</source>
        <translation>Essayer</translation>
    </message>
    <message>
        <source>Writing…</source>
        <translation>Rédaction…</translation>
    </message>
    <message>
        <source>It did not work: %1</source>
        <translation>Cela n’a pas fonctionné : %1</translation>
    </message>
    <message>
        <source>Written without a model, in %1 s: %2</source>
        <translation>Rédigé sans modèle, en %1 s : %2</translation>
    </message>
    <message>
        <source>Written by %1, in %2 s: %3</source>
        <translation>Rédigé par %1, en %2 s : %3</translation>
    </message>
    <message>
        <source>mine</source>
        <translation>Les miens</translation>
    </message>
    <message>
        <source>For once, such as: make it rhyme</source>
        <translation>Pour une fois, par exemple : fais-le rimer</translation>
    </message>
    <message>
        <source>Instruction for once</source>
        <translation>Instruction pour une fois</translation>
    </message>
    <message>
        <source>Your own commands</source>
        <translation>Vos propres commandes</translation>
    </message>
    <message>
        <source>They are under "mine" in the popup, and need a language model. You can copy or edit their file: %1</source>
        <translation>Elles sont sous « Les miens » dans la fenêtre des commandes et demandent un modèle de langage. Vous pouvez copier ou modifier leur fichier : %1</translation>
    </message>
    <message>
        <source>Remove the command</source>
        <translation>Retirer la commande</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nouveau</translation>
    </message>
    <message>
        <source>New command</source>
        <translation>Nouvelle commande</translation>
    </message>
    <message>
        <source>Try the command</source>
        <translation>Essayer la commande</translation>
    </message>
    <message>
        <source>What is to be done with the text</source>
        <translation>Ce qu'il faut faire du texte</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Touches</translation>
    </message>
    <message>
        <source>The one above</source>
        <translation>Celui indiqué plus haut</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Instruction</source>
        <translation>Instruction</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>Le fichier ne peut pas être écrit : %1</translation>
    </message>
    <message>
        <source>A command needs a name and an instruction.</source>
        <translation>Une commande demande un nom et une instruction.</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>La demande a pris trop de temps</translation>
    </message>
    <message>
        <source>The writing backend cannot be reached</source>
        <translation>Le service d'écriture n'est pas joignable</translation>
    </message>
    <message>
        <source>The connection to the writing backend broke off</source>
        <translation>La connexion au service d'écriture a été coupée</translation>
    </message>
    <message>
        <source>A secure connection to the writing backend could not be made</source>
        <translation>Une connexion sûre au service d'écriture n'a pas pu être établie</translation>
    </message>
    <message>
        <source>The writing backend has moved to another address</source>
        <translation>Le service d'écriture a changé d'adresse</translation>
    </message>
    <message>
        <source>The answer is larger than 32 MB</source>
        <translation>La réponse dépasse 32 Mo</translation>
    </message>
    <message>
        <source>The local writing backend did not start in time.</source>
        <translation>Le service d'écriture de cet ordinateur n'a pas démarré à temps.</translation>
    </message>
    <message>
        <source>The local writing backend could not be started.</source>
        <translation>Le service d'écriture de cet ordinateur n'a pas pu être démarré.</translation>
    </message>
    <message>
        <source>The local writing backend ended unexpectedly.</source>
        <translation>Le service d'écriture de cet ordinateur s'est arrêté de façon inattendue.</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
</context>
</TS>
