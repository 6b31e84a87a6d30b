<?xml version="1.0" encoding="UTF-8"?>
<!-- Turns the registry view into the configuration document. A template that names a directory leaves a key of that
     name, told by its value, to the first one. -->
<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
    <xsl:output method="xml" indent="yes" encoding="UTF-8"/>

    <!-- whatever no other template names stays as it is; what holds no elements is copied whole, since to have the
         engine look for templates costs far more than a copy -->
    <xsl:template match="node() | @*">
        <xsl:choose>
            <xsl:when test="*">
                <xsl:copy>
                    <xsl:apply-templates select="*"/>
                </xsl:copy>
            </xsl:when>
            <xsl:otherwise>
                <xsl:copy-of select="."/>
            </xsl:otherwise>
        </xsl:choose>
    </xsl:template>

    <!-- the view's root becomes the document's -->
    <xsl:template match="lumo-config-view">
        <lumo_config version="1.1" creator_version="1.0" creator="quendartc-quendarsettings">
            <xsl:apply-templates select="@* | node()"/>
        </lumo_config>
    </xsl:template>

    <!-- each session takes the directory's place, its name and autostart first -->
    <xsl:template match="sessions[* or not(normalize-space())]">
        <xsl:for-each select="*">
            <session id="{concat(replace(local-name(.), 'uuid-', '{'), '}')}">
                <xsl:apply-templates select="name"/>
                <xsl:apply-templates select="autostart"/>
                <xsl:apply-templates select="@* | node()[not(local-name()='name')][not(local-name()='autostart')]"/>
            </session>
        </xsl:for-each>
    </xsl:template>

    <!-- an agent that is not enabled keeps its settings to itself -->
    <xsl:template match="cda[* or not(normalize-space())]">
        <xsl:choose>
            <xsl:when test="./enable = 'true'">
                <xsl:copy>
                    <xsl:apply-templates select="@* | node()"/>
                </xsl:copy>
            </xsl:when>
            <xsl:otherwise>
                <cda/>
            </xsl:otherwise>
        </xsl:choose>
    </xsl:template>

    <!-- the settings of the schema, in its order -->
    <xsl:template match="display[* or not(normalize-space())]">
        <display>
            <xsl:apply-templates select="resolution"/>
            <xsl:apply-templates select="color_depth"/>
            <xsl:apply-templates select="refresh_rate"/>
            <xsl:apply-templates select="multi_monitor_mode"/>
            <xsl:apply-templates select="primary_monitor"/>
        </display>
    </xsl:template>

    <!-- the settings of the schema, in its order -->
    <xsl:template match="power[* or not(normalize-space())]">
        <power>
            <xsl:apply-templates select="screen_saver_delay"/>
            <xsl:apply-templates select="monitor_off_delay"/>
            <xsl:apply-templates select="device_sleep_delay"/>
        </power>
    </xsl:template>

    <!-- each printer takes the directory's place, with the settings that a document may carry -->
    <xsl:template match="printers[* or not(normalize-space())]">
        <xsl:for-each select="*">
            <printer id="{concat(replace(local-name(.), 'uuid-', '{'), '}')}">
                <xsl:apply-templates select="name"/>
                <xsl:apply-templates select="address"/>
                <xsl:apply-templates select="port"/>
                <xsl:apply-templates select="driver"/>
            </printer>
        </xsl:for-each>
    </xsl:template>

    <!-- the Linux form of the time zone; the others follow from it -->
    <xsl:template match="time_zone[* or not(normalize-space())]">
        <time_zone>
            <xsl:apply-templates select="area"/>
            <xsl:apply-templates select="city"/>
        </time_zone>
    </xsl:template>

    <!-- the settings of the schema, in its order -->
    <xsl:template match="wireless[* or not(normalize-space())]">
        <wireless>
            <xsl:apply-templates select="enable"/>
            <xsl:apply-templates select="ssid"/>
            <xsl:apply-templates select="security"/>
            <xsl:apply-templates select="passphrase"/>
        </wireless>
    </xsl:template>
</xsl:stylesheet>
