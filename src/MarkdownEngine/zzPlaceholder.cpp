namespace markdown {}
