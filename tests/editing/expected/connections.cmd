@ 44-43
connect u2{CK} pck{C}
connect a pa{PAD}
connect py{PAD} y
