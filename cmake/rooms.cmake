# Every room and the rooms it may include. The build links by this table and the layering check
# reads it; nothing else knows the neighbours. `room(NAME NEIGHBOUR...)`, one line each.
room(base)
room(platform base)
room(xml base)
room(geo base)
room(gps geo platform base)
room(track xml gps geo platform base)
room(library track xml gps geo platform base)
room(display gps geo platform base)
room(app display library track gps xml geo platform base)
room(win32 app display library track gps xml geo platform base)
room(posix app display library track gps xml geo platform base)
room(cli app display library track gps xml geo platform base)
