$lumoConfig
