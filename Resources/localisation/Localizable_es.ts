<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>improve</source>
        <translation>Mejorar</translation>
    </message>
    <message>
        <source>tone-changer</source>
        <translation>Cambiar el tono</translation>
    </message>
    <message>
        <source>reply</source>
        <translation>Responder</translation>
    </message>
    <message>
        <source>translate</source>
        <translation>Traducir</translation>
    </message>
    <message>
        <source>more</source>
        <translation>Más</translation>
    </message>
    <message>
        <source>quick-improve</source>
        <translation>Mejora rápida</translation>
    </message>
    <message>
        <source>check-grammar</source>
        <translation>Revisar la gramática</translation>
    </message>
    <message>
        <source>elevate</source>
        <translation>Más elevado</translation>
    </message>
    <message>
        <source>expand</source>
        <translation>Ampliar</translation>
    </message>
    <message>
        <source>clear</source>
        <translation>Más claro</translation>
    </message>
    <message>
        <source>concise</source>
        <translation>Más conciso</translation>
    </message>
    <message>
        <source>emojify</source>
        <translation>Con emojis</translation>
    </message>
    <message>
        <source>friendly</source>
        <translation>Amistoso</translation>
    </message>
    <message>
        <source>happy</source>
        <translation>Alegre</translation>
    </message>
    <message>
        <source>confident</source>
        <translation>Seguro</translation>
    </message>
    <message>
        <source>romantic</source>
        <translation>Romántico</translation>
    </message>
    <message>
        <source>sarcastic</source>
        <translation>Sarcástico</translation>
    </message>
    <message>
        <source>professional</source>
        <translation>Profesional</translation>
    </message>
    <message>
        <source>witty</source>
        <translation>Ingenioso</translation>
    </message>
    <message>
        <source>flirty</source>
        <translation>Coqueto</translation>
    </message>
    <message>
        <source>reply-msg-copy</source>
        <translation>Responder al mensaje</translation>
    </message>
    <message>
        <source>english</source>
        <translation>Inglés</translation>
    </message>
    <message>
        <source>italian</source>
        <translation>Italiano</translation>
    </message>
    <message>
        <source>french</source>
        <translation>Francés</translation>
    </message>
    <message>
        <source>spanish</source>
        <translation>Español</translation>
    </message>
    <message>
        <source>catalan</source>
        <translation>Catalán</translation>
    </message>
    <message>
        <source>german</source>
        <translation>Alemán</translation>
    </message>
    <message>
        <source>chinese</source>
        <translation>Chino</translation>
    </message>
    <message>
        <source>japanese</source>
        <translation>Japonés</translation>
    </message>
    <message>
        <source>portuguese</source>
        <translation>Portugués</translation>
    </message>
    <message>
        <source>russian</source>
        <translation>Ruso</translation>
    </message>
    <message>
        <source>greek</source>
        <translation>Griego</translation>
    </message>
    <message>
        <source>hindi</source>
        <translation>Hindi</translation>
    </message>
    <message>
        <source>arabic</source>
        <translation>Árabe</translation>
    </message>
    <message>
        <source>ukrainian</source>
        <translation>Ucraniano</translation>
    </message>
    <message>
        <source>korean</source>
        <translation>Coreano</translation>
    </message>
    <message>
        <source>polish</source>
        <translation>Polaco</translation>
    </message>
    <message>
        <source>hungarian</source>
        <translation>Húngaro</translation>
    </message>
    <message>
        <source>armenian</source>
        <translation>Armenio</translation>
    </message>
    <message>
        <source>croatian</source>
        <translation>Croata</translation>
    </message>
    <message>
        <source>thai</source>
        <translation>Tailandés</translation>
    </message>
    <message>
        <source>malay</source>
        <translation>Malayo</translation>
    </message>
    <message>
        <source>bengali</source>
        <translation>Bengalí</translation>
    </message>
    <message>
        <source>vietnamese</source>
        <translation>Vietnamita</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>send-feedback</source>
        <translation>Enviar comentarios</translation>
    </message>
    <message>
        <source>share</source>
        <translation>Compartir</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>Valorar</translation>
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
        <translation>Aplicar</translation>
    </message>
    <message>
        <source>Quillet could not write the text into the other application. It is on the clipboard, so you can paste it.</source>
        <translation>Quillet no pudo escribir el texto en la otra aplicación. Está en el portapapeles: puede pegarlo.</translation>
    </message>
    <message>
        <source>Install Quillet</source>
        <translation>Instalar Quillet</translation>
    </message>
    <message>
        <source>Quillet needs to be installed in the Applications folder.</source>
        <translation>Quillet debe instalarse en la carpeta de aplicaciones.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Instalar</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Install Failed</source>
        <translation>La instalación ha fallado</translation>
    </message>
    <message>
        <source>Could not copy Quillet to Applications: </source>
        <translation>No se pudo copiar Quillet a las aplicaciones: </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Open Quillet</source>
        <translation>Abrir Quillet</translation>
    </message>
    <message>
        <source>Send Feedback</source>
        <translation>Enviar comentarios</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Buscar actualizaciones</translation>
    </message>
    <message>
        <source>No mail program could be opened. Please write to %1.</source>
        <translation>No se pudo abrir ningún programa de correo. Escriba a %1.</translation>
    </message>
    <message>
        <source>Your system&apos;s package manager keeps Quillet up to date, together with your other programs.</source>
        <translation>El gestor de paquetes del sistema mantiene Quillet al día junto con los demás programas.</translation>
    </message>
    <message>
        <source>New versions of Quillet are published at %1.</source>
        <translation>Las nuevas versiones de Quillet se publican en %1.</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>Sin configurar</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Comprobando…</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Cargando…</translation>
    </message>
    <message>
        <source>All looks great!</source>
        <translation>¡Todo está bien!</translation>
    </message>
    <message>
        <source>Beta test</source>
        <translation>Prueba beta</translation>
    </message>
    <message>
        <source>Quillet is ready to be used
across all your favourite apps</source>
        <translation>Quillet está listo para usarse
en todas sus aplicaciones favoritas</translation>
    </message>
    <message>
        <source>Configure Quillet</source>
        <translation>Configurar Quillet</translation>
    </message>
    <message>
        <source>Quillet Status</source>
        <translation>Estado de Quillet</translation>
    </message>
    <message>
        <source>Premium Status</source>
        <translation>Estado premium</translation>
    </message>
    <message>
        <source>You have full access to all AI features.</source>
        <translation>Tiene acceso completo a todas las funciones de IA.</translation>
    </message>
    <message>
        <source>Open Accessibility Settings</source>
        <translation>Abrir los ajustes de accesibilidad</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Listo</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>A quill turning a draft into clear text</source>
        <translation>Una pluma que convierte un borrador en un texto claro</translation>
    </message>
    <message>
        <source>Welcome to Quillet</source>
        <translation>Bienvenido a Quillet</translation>
    </message>
    <message>
        <source>Set up you Quillet in a few easy steps to start communicating with confidence</source>
        <translation>Configure Quillet en unos pocos pasos y comience a comunicarse con confianza</translation>
    </message>
    <message>
        <source>• Open Accessibility Settings
• Toggle Quillet
• Come back here</source>
        <translation>• Abra los ajustes de accesibilidad
• Active Quillet
• Vuelva aquí</translation>
    </message>
    <message>
        <source>First turn on the switch beside Quillet in the accessibility settings. Then use the Quillet button at the top right of any text field.</source>
        <translation>Active primero el interruptor junto a Quillet en los ajustes de accesibilidad. Después use el botón de Quillet, arriba a la derecha en cualquier campo de texto.</translation>
    </message>
    <message>
        <source>Quillet is installed! Now you can try it!</source>
        <translation>¡Quillet está instalado! ¡Ya puede probarlo!</translation>
    </message>
    <message>
        <source>Type something below, then try Quillet&apos;s features.</source>
        <translation>Escriba algo abajo y pruebe las funciones de Quillet.</translation>
    </message>
    <message>
        <source>Quillet is ready</source>
        <translation>Quillet está listo</translation>
    </message>
    <message>
        <source>Great job!</source>
        <translation>¡Muy bien!</translation>
    </message>
    <message>
        <source>Quillet is ready to go. Start communicating with confidence in all your favourite apps!</source>
        <translation>Quillet está listo. ¡Comience a comunicarse con confianza en todas sus aplicaciones favoritas!</translation>
    </message>
    <message>
        <source>Text to try Quillet on</source>
        <translation>Texto para probar Quillet</translation>
    </message>
    <message>
        <source>There is no text in this input yet. Write something, then choose the command again.</source>
        <translation>Aún no hay texto en este campo. Escriba algo y elija la orden de nuevo.</translation>
    </message>
    <message>
        <source>Message from Quillet</source>
        <translation>Mensaje de Quillet</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Its icon in the tray opens this window again, and ends Quillet.</source>
        <translation>Quillet sigue en segundo plano. Su icono en la bandeja vuelve a abrir esta ventana y cierra Quillet.</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Start Quillet again to open this window.</source>
        <translation>Quillet sigue en segundo plano. Inicie Quillet de nuevo para abrir esta ventana.</translation>
    </message>
    <message>
        <source>Bring Back the Former Clipboard</source>
        <translation>Recuperar el portapapeles anterior</translation>
    </message>
    <message>
        <source>Put back what was there</source>
        <translation>Restaurar el texto anterior</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Escrito</translation>
    </message>
    <message>
        <source>Written; the program changed %1 characters</source>
        <translation>Escrito; caracteres cambiados por el programa: %1</translation>
    </message>
    <message>
        <source>Not written</source>
        <translation>No escrito</translation>
    </message>
    <message>
        <source>Not written; the text is on the clipboard</source>
        <translation>No escrito; el texto está en el portapapeles</translation>
    </message>
    <message>
        <source>What has changed</source>
        <translation>Qué ha cambiado</translation>
    </message>
    <message>
        <source>Click to take this change back</source>
        <translation>Haga clic para deshacer este cambio</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Cambios</translation>
    </message>
    <message>
        <source>Show what has changed (Ctrl+D)</source>
        <translation>Mostrar qué ha cambiado (Ctrl+D)</translation>
    </message>
    <message>
        <source>Nothing has changed.</source>
        <translation>No ha cambiado nada.</translation>
    </message>
    <message>
        <source>%1 changes. Ctrl+D shows them.</source>
        <translation>Cambios: %1. Ctrl+D los muestra.</translation>
    </message>
    <message>
        <source>Quillet Settings</source>
        <translation>Ajustes de Quillet</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Permiso</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Cambiar…</translation>
    </message>
    <message>
        <source>Change the permission</source>
        <translation>Cambiar el permiso</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Atajo de teclado</translation>
    </message>
    <message>
        <source>Opens the commands for the input that you are in, or for what is selected in it.</source>
        <translation>Abre las órdenes para el campo en el que está o para lo que está seleccionado en él.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ninguno</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Sin atajo</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>Start Quillet when I log in, without a window</source>
        <translation>Iniciar Quillet al iniciar la sesión, sin ventana</translation>
    </message>
    <message>
        <source>Language model</source>
        <translation>Modelo de lenguaje</translation>
    </message>
    <message>
        <source>Without one, Quillet corrects and improves texts on this machine. For the other commands, name a server that speaks the chat completions interface.</source>
        <translation>Sin él, Quillet corrige y mejora textos en este equipo. Para las demás órdenes, indique un servidor con la interfaz de respuestas de chat.</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Dirección</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modelo</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Clave</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programas</translation>
    </message>
    <message>
        <source>Quillet stays out of these. The menu of its button, with the other mouse button, adds one.</source>
        <translation>Quillet no interviene en estos. El menú de su botón, con el otro botón del ratón, añade uno.</translation>
    </message>
    <message>
        <source>Programs that Quillet stays out of</source>
        <translation>Programas en los que Quillet no interviene</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>What is recorded</source>
        <translation>Qué se registra</translation>
    </message>
    <message>
        <source>That you have opened the wizard, clicked the button, run a command and which one, and applied a result. Never a text, nor the name of a program.</source>
        <translation>Que ha abierto el asistente, ha pulsado el botón, ha ejecutado una orden (y cuál) y ha aplicado un resultado. Nunca un texto ni el nombre de un programa.</translation>
    </message>
    <message>
        <source>Quillet may read and write the inputs of your programs.</source>
        <translation>Quillet puede leer y escribir en los campos de sus programas.</translation>
    </message>
    <message>
        <source>Quillet may not see your programs.</source>
        <translation>Quillet no puede ver sus programas.</translation>
    </message>
    <message>
        <source>These keys are not free: another program has them, or the system does not hand them out. Press others.</source>
        <translation>Estas teclas no están libres: otro programa las usa o el sistema no las cede. Pulse otras.</translation>
    </message>
    <message>
        <source>It will be copied to %1.</source>
        <translation>Se copiará en %1.</translation>
    </message>
    <message>
        <source>Quillet can start when you log in, in the background, so that its button is there at once. You find this in the settings too.</source>
        <translation>Quillet puede iniciarse en segundo plano al iniciar la sesión, para que su botón esté siempre disponible. También está en los ajustes.</translation>
    </message>
    <message>
        <source>Start at Login</source>
        <translation>Iniciar con la sesión</translation>
    </message>
    <message>
        <source>Only the selection</source>
        <translation>Solo la selección</translation>
    </message>
    <message>
        <source>Not in %1</source>
        <translation>No en %1</translation>
    </message>
    <message>
        <source>The keyboard went to another input meanwhile: some of the text may have gone there.</source>
        <translation>El teclado pasó entretanto a otro campo: parte del texto puede haber ido allí.</translation>
    </message>
    <message>
        <source>Look at your text: a part of it may have changed.</source>
        <translation>Revise su texto: una parte puede haber cambiado.</translation>
    </message>
    <message>
        <source>Quillet could not write into the other application.</source>
        <translation>Quillet no pudo escribir en la otra aplicación.</translation>
    </message>
    <message>
        <source>Works in some programs</source>
        <translation>Funciona en algunos programas</translation>
    </message>
    <message>
        <source>The writing service could not be asked, or said nothing</source>
        <translation>No se pudo consultar el servicio de escritura o no respondió</translation>
    </message>
    <message>
        <source>%1. Your text is unchanged. Press &quot;reload&quot; to try again.</source>
        <translation>%1. Su texto no ha cambiado. Pulse «Reload» para intentarlo de nuevo.</translation>
    </message>
    <message>
        <source>Written by %1</source>
        <translation>Escrito por %1</translation>
    </message>
    <message>
        <source>%1 still shows Quillet only its window, because it was started before its switch was turned on, or not from the menu. Quit it and start it from the menu.</source>
        <translation>%1 sigue mostrando a Quillet solo su ventana, porque se inició antes de activar su opción o no desde el menú. Ciérrelo e inícielo desde el menú.</translation>
    </message>
    <message>
        <source>%1 shows Quillet only its window. A switch in its menu entry lets Quillet see the texts that you write in it.</source>
        <translation>%1 muestra a Quillet solo su ventana. Una opción en su entrada del menú permite a Quillet ver los textos que usted escribe en él.</translation>
    </message>
    <message>
        <source>Turn on for %1</source>
        <translation>Activar para %1</translation>
    </message>
    <message>
        <source>%1 shows its texts from its next start on. The settings take this back.</source>
        <translation>%1 mostrará sus textos a partir del próximo inicio. Los ajustes lo deshacen.</translation>
    </message>
    <message>
        <source>Start again when I quit it</source>
        <translation>Iniciar de nuevo cuando lo cierre</translation>
    </message>
    <message>
        <source>%1 was not started again. Start it from the menu.</source>
        <translation>%1 no se ha iniciado de nuevo. Inícielo desde el menú.</translation>
    </message>
    <message>
        <source>These show their texts because Quillet has turned on a switch in their menu entry.</source>
        <translation>Estos muestran sus textos porque Quillet ha activado una opción en su entrada del menú.</translation>
    </message>
    <message>
        <source>Programs whose switch is on</source>
        <translation>Programas con la opción activada</translation>
    </message>
    <message>
        <source>Turn off</source>
        <translation>Desactivar</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sesión</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>desconocido</translation>
    </message>
    <message>
        <source>type %1</source>
        <translation>tipo %1</translation>
    </message>
    <message>
        <source>type %1, desktop %2</source>
        <translation>tipo %1, escritorio %2</translation>
    </message>
    <message>
        <source>; no X11 display answers</source>
        <translation>; ninguna pantalla X11 responde</translation>
    </message>
    <message>
        <source>Start Quillet in a graphical session. On a Wayland desktop, install its X11 server (the package xwayland).</source>
        <translation>Inicie Quillet en una sesión gráfica. En un escritorio Wayland, instale su servidor X11 (el paquete xwayland).</translation>
    </message>
    <message>
        <source>; Quillet works in programs that run on its X11 server</source>
        <translation>; Quillet funciona en los programas que usan su servidor X11</translation>
    </message>
    <message>
        <source>Choose an X11 session when you log in to use Quillet everywhere.</source>
        <translation>Elija una sesión X11 al iniciar la sesión para usar Quillet en todas partes.</translation>
    </message>
    <message>
        <source>Window manager</source>
        <translation>Gestor de ventanas</translation>
    </message>
    <message>
        <source>the compositor of the session</source>
        <translation>el compositor de la sesión</translation>
    </message>
    <message>
        <source>none</source>
        <translation>ninguno</translation>
    </message>
    <message>
        <source>Start a window manager: without one, windows are not told apart.</source>
        <translation>Inicie un gestor de ventanas: sin él no se distinguen las ventanas.</translation>
    </message>
    <message>
        <source>%1 does not follow %2</source>
        <translation>%1 no cumple %2</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Bandeja</translation>
    </message>
    <message>
        <source>present</source>
        <translation>presente</translation>
    </message>
    <message>
        <source>Start Quillet a second time to bring back its window.</source>
        <translation>Inicie Quillet otra vez para recuperar su ventana.</translation>
    </message>
    <message>
        <source>Accessibility service</source>
        <translation>Servicio de accesibilidad</translation>
    </message>
    <message>
        <source>there is no session bus</source>
        <translation>no hay bus de sesión</translation>
    </message>
    <message>
        <source>Start Quillet in a desktop session, or with dbus-run-session.</source>
        <translation>Inicie Quillet en una sesión de escritorio o con dbus-run-session.</translation>
    </message>
    <message>
        <source>it is not installed or does not answer</source>
        <translation>no está instalado o no responde</translation>
    </message>
    <message>
        <source>Install the package at-spi2-core and log in again.</source>
        <translation>Instale el paquete at-spi2-core y vuelva a iniciar la sesión.</translation>
    </message>
    <message>
        <source>it is switched off</source>
        <translation>está desactivado</translation>
    </message>
    <message>
        <source>Start Quillet: it switches the service on.</source>
        <translation>Inicie Quillet: activa el servicio.</translation>
    </message>
    <message>
        <source>it answers and is switched on</source>
        <translation>responde y está activado</translation>
    </message>
    <message>
        <source>given</source>
        <translation>concedido</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>no concedido</translation>
    </message>
    <message>
        <source>Run &quot;quillet --setup&quot; and follow the wizard.</source>
        <translation>Ejecute «quillet --setup» y siga al asistente.</translation>
    </message>
    <message>
        <source>%1 shows only its windows</source>
        <translation>%1 solo muestra sus ventanas</translation>
    </message>
    <message>
        <source>%1 shows nothing</source>
        <translation>%1 no muestra nada</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programa</translation>
    </message>
    <message>
        <source>Start the program again while Quillet has its permission.</source>
        <translation>Inicie de nuevo el programa mientras Quillet tiene su permiso.</translation>
    </message>
    <message>
        <source>these show their text: %1</source>
        <translation>estos muestran su texto: %1</translation>
    </message>
    <message>
        <source>Typing</source>
        <translation>Escritura</translation>
    </message>
    <message>
        <source>every character can be typed</source>
        <translation>se puede escribir cualquier carácter</translation>
    </message>
    <message>
        <source>the display lacks %1</source>
        <translation>a la pantalla le falta %1</translation>
    </message>
    <message>
        <source>there is no display</source>
        <translation>no hay pantalla</translation>
    </message>
    <message>
        <source>Without it Quillet cannot write into browsers and programs built on them.</source>
        <translation>Sin ello Quillet no puede escribir en navegadores ni en programas basados en ellos.</translation>
    </message>
    <message>
        <source>Free keys for characters that the layout does not have: %1</source>
        <translation>Teclas libres para caracteres que la distribución no tiene: %1</translation>
    </message>
    <message>
        <source>Choose fewer keyboard layouts at a time.</source>
        <translation>Elija menos distribuciones de teclado a la vez.</translation>
    </message>
    <message>
        <source>Writing backend</source>
        <translation>Servicio de escritura</translation>
    </message>
    <message>
        <source>Install Quillet again: quillet-backend belongs beside it.</source>
        <translation>Instale Quillet de nuevo: quillet-backend va a su lado.</translation>
    </message>
    <message>
        <source>Quillet cannot do its job here yet.</source>
        <translation>Quillet aún no puede hacer su trabajo aquí.</translation>
    </message>
    <message>
        <source>Quillet can do its job here.</source>
        <translation>Quillet puede hacer su trabajo aquí.</translation>
    </message>
    <message>
        <source>Use the language model on this computer?</source>
        <translation>¿Usar el modelo de lenguaje de este equipo?</translation>
    </message>
    <message>
        <source>The server at %1, run by the user "%2", offers the model "%3". With it Quillet can do more. The texts that you use a command on are then sent to this server; without it they stay with Quillet.</source>
        <translation>El servidor en %1, del usuario «%2», ofrece el modelo «%3». Con él, Quillet puede hacer más. Los textos a los que aplique una orden se envían entonces a ese servidor; sin él, se quedan en Quillet.</translation>
    </message>
    <message>
        <source>Your answer is kept. You can change it in the settings.</source>
        <translation>Su respuesta se guarda. Puede cambiarla en los ajustes.</translation>
    </message>
    <message>
        <source>Use it</source>
        <translation>Usarlo</translation>
    </message>
    <message>
        <source>Stay offline</source>
        <translation>Seguir sin él</translation>
    </message>
    <message>
        <source>Ask later</source>
        <translation>Preguntar más tarde</translation>
    </message>
    <message>
        <source>Your answer could not be stored.</source>
        <translation>No se pudo guardar su respuesta.</translation>
    </message>
    <message>
        <source>The menu entry of this program cannot be read.</source>
        <translation>No se puede leer la entrada de menú de este programa.</translation>
    </message>
    <message>
        <source>The menu entry could not be written: %1.</source>
        <translation>No se pudo escribir la entrada de menú: %1.</translation>
    </message>
    <message>
        <source>The menu entry could not be removed: %1.</source>
        <translation>No se pudo eliminar la entrada de menú: %1.</translation>
    </message>
    <message>
        <source>This application shows Quillet only its window: quit it and start it with the option --force-renderer-accessibility.</source>
        <translation>Esta aplicación solo le muestra a Quillet su ventana: ciérrela e iníciela con la opción --force-renderer-accessibility.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Accesibilidad</translation>
    </message>
    <message>
        <source>Applications in this list may see which text field you are working in, and read and replace the text in it. Passwords are never read.</source>
        <translation>Las aplicaciones de esta lista pueden ver en qué campo de texto trabaja y leer y sustituir su texto. Las contraseñas no se leen nunca.</translation>
    </message>
    <message>
        <source>The accessibility service of this desktop is not running, so this permission has no effect. Install the package at-spi2-core and log in again.</source>
        <translation>El servicio de accesibilidad de este escritorio no está en marcha, así que este permiso no tiene efecto. Instale el paquete at-spi2-core y vuelva a iniciar sesión.</translation>
    </message>
    <message>
        <source>Off. Quillet does not see other applications.</source>
        <translation>Desactivado. Quillet no ve otras aplicaciones.</translation>
    </message>
    <message>
        <source>On. Connecting to the accessibility service…</source>
        <translation>Activado. Conectando con el servicio de accesibilidad…</translation>
    </message>
    <message>
        <source>On, but accessibility is switched off for this desktop. Switch this off and on again.</source>
        <translation>Activado, pero la accesibilidad está desactivada en este escritorio. Desactive esto y vuelva a activarlo.</translation>
    </message>
    <message>
        <source>On. Applications that were started before may have to be started again.</source>
        <translation>Activado. Puede que haya que reiniciar las aplicaciones ya abiertas.</translation>
    </message>
    <message>
        <source>In this Wayland session Quillet only works in programs that run on X11: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>En esta sesión de Wayland, Quillet solo funciona en los programas que usan X11: elija una sesión X11 al iniciar sesión y funcionará en todos.</translation>
    </message>
    <message>
        <source>This Wayland session does not tell Quillet where the windows of other programs are: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>Esta sesión de Wayland no le indica a Quillet dónde están las ventanas de otros programas: elija una sesión X11 al iniciar sesión y funcionará en todos.</translation>
    </message>
    <message>
        <source>The compositor no longer tells Quillet where windows are: start Quillet again, and if that does not help, log out and in.</source>
        <translation>El compositor ya no le indica a Quillet dónde están las ventanas: reinicie Quillet y, si no basta, cierre la sesión y vuelva a iniciarla.</translation>
    </message>
    <message>
        <source>Does Quillet work here?</source>
        <translation>¿Funciona Quillet aquí?</translation>
    </message>
    <message>
        <source>Copy for a Bug Report</source>
        <translation>Copiar para un informe de error</translation>
    </message>
    <message>
        <source>Examine</source>
        <translation>Examinar</translation>
    </message>
    <message>
        <source>Looks at this desktop and its programs</source>
        <translation>Examina este escritorio y sus programas</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Examinando…</translation>
    </message>
    <message>
        <source>The examination failed.</source>
        <translation>El examen ha fallado.</translation>
    </message>
    <message>
        <source>Use %1, found on this computer</source>
        <translation>Usar %1, encontrado en este equipo</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Resultado</translation>
    </message>
    <message>
        <source>Icon of Quillet</source>
        <translation>Icono de Quillet</translation>
    </message>
    <message>
        <source>Try It</source>
        <translation>Probar</translation>
    </message>
    <message>
        <source>Writing…</source>
        <translation>Escribiendo…</translation>
    </message>
    <message>
        <source>It did not work: %1</source>
        <translation>No ha funcionado: %1</translation>
    </message>
    <message>
        <source>Written without a model, in %1 s: %2</source>
        <translation>Escrito sin modelo, en %1 s: %2</translation>
    </message>
    <message>
        <source>Written by %1, in %2 s: %3</source>
        <translation>Escrito por %1, en %2 s: %3</translation>
    </message>
    <message>
        <source>mine</source>
        <translation>Míos</translation>
    </message>
    <message>
        <source>For once, such as: make it rhyme</source>
        <translation>Por una vez, por ejemplo: que rime</translation>
    </message>
    <message>
        <source>Instruction for once</source>
        <translation>Instrucción para una vez</translation>
    </message>
    <message>
        <source>Your own commands</source>
        <translation>Sus propios comandos</translation>
    </message>
    <message>
        <source>They are under "mine" in the popup, and need a language model. You can copy or edit their file: %1</source>
        <translation>Están en «Míos» en la ventana de comandos y necesitan un modelo de lenguaje. Puede copiar o editar su archivo: %1</translation>
    </message>
    <message>
        <source>Remove the command</source>
        <translation>Quitar el comando</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nuevo</translation>
    </message>
    <message>
        <source>New command</source>
        <translation>Comando nuevo</translation>
    </message>
    <message>
        <source>Try the command</source>
        <translation>Probar el comando</translation>
    </message>
    <message>
        <source>What is to be done with the text</source>
        <translation>Qué hay que hacer con el texto</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Teclas</translation>
    </message>
    <message>
        <source>The one above</source>
        <translation>El de arriba</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Instruction</source>
        <translation>Instrucción</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>No se puede escribir el archivo: %1</translation>
    </message>
    <message>
        <source>A command needs a name and an instruction.</source>
        <translation>Un comando necesita un nombre y una instrucción.</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>La petición ha tardado demasiado</translation>
    </message>
    <message>
        <source>The writing backend cannot be reached</source>
        <translation>No se puede acceder al servicio de escritura</translation>
    </message>
    <message>
        <source>The connection to the writing backend broke off</source>
        <translation>Se ha cortado la conexión con el servicio de escritura</translation>
    </message>
    <message>
        <source>A secure connection to the writing backend could not be made</source>
        <translation>No se ha podido establecer una conexión segura con el servicio de escritura</translation>
    </message>
    <message>
        <source>The writing backend has moved to another address</source>
        <translation>El servicio de escritura se ha mudado a otra dirección</translation>
    </message>
    <message>
        <source>The answer is larger than 32 MB</source>
        <translation>La respuesta supera los 32 MB</translation>
    </message>
    <message>
        <source>The local writing backend did not start in time.</source>
        <translation>El servicio de escritura de este equipo no se ha iniciado a tiempo.</translation>
    </message>
    <message>
        <source>The local writing backend could not be started.</source>
        <translation>No se ha podido iniciar el servicio de escritura de este equipo.</translation>
    </message>
    <message>
        <source>The local writing backend ended unexpectedly.</source>
        <translation>El servicio de escritura de este equipo ha terminado de forma inesperada.</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
</context>
</TS>
