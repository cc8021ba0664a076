# In a bundle's folder: what the framework's descriptions lack or say in words of its own.
# Parameters that nobody should automate are hidden.
file(READ Brimvale.ttl text)
string(REPLACE "http://kxstudio.sf.net/ns/lv2ext/props#NonAutomatable" "http://lv2plug.in/ns/ext/port-props#notOnGUI" text "${text}")
file(WRITE Brimvale.ttl "${text}")
# The panel tells the host when it changes its size.
file(READ manifest.ttl text)
string(REPLACE "ui:parent ," "ui:parent ,\n                        ui:resize ," text "${text}")
file(WRITE manifest.ttl "${text}")
