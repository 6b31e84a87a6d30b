doc($config)
