<?xml version="1.0" encoding="utf-8"?>
<!-- The filter's turn of a page without boxes, for a comparison of speed. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:x="http://schemas.microsoft.com/xps/2005/06" xmlns="http://schemas.microsoft.com/xps/2005/06"
    exclude-result-prefixes="x">
  <xsl:output method="xml" encoding="utf-8" indent="no"/>
  <xsl:template match="@*"><xsl:copy/></xsl:template>
  <xsl:template match="*"><xsl:copy><xsl:apply-templates select="@*|*"/></xsl:copy></xsl:template>
  <xsl:template match="x:FixedPage">
    <xsl:copy>
      <xsl:apply-templates select="@*"/>
      <xsl:attribute name="Height"><xsl:value-of select="format-number(@Width, '0.00')"/></xsl:attribute>
      <xsl:attribute name="Width"><xsl:value-of select="format-number(@Height, '0.00')"/></xsl:attribute>
      <Canvas RenderTransform="0.00,-1.00,1.00,0.00,0.00,{format-number(@Width, '0.00')}">
        <xsl:apply-templates select="*"/>
      </Canvas>
    </xsl:copy>
  </xsl:template>
  <xsl:template match="x:FixedPage.Resources">
    <Canvas.Resources><xsl:apply-templates select="@*|*"/></Canvas.Resources>
  </xsl:template>
</xsl:stylesheet>
