namespace korvel {}
