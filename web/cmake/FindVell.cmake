# Found before what is installed: in a page's build the engine is a part of it.
set(Vell_FOUND TRUE)
set(Vell_VERSION 1.0.0)
