for $section1 in doc($newConfig)/lumo_config/*
let $sectionName := local-name($section1)
let $section2 := doc($initialConfig)/lumo_config/*[name() = $sectionName]
where not(deep-equal($section1, $section2))
return $sectionName
