-- csv/sucursales.sql: loads Sucursales.csv (one row per Sucursales row; see formats/README.md,
-- "Shipped formats") into the staging table Sucursales.

Insert into Sucursales (
  id_Sucursal, Nombre, Direccion, Telefono, Email, Contacto, InicioAct, id_Dpto)
Select
  id_Sucursal, Nombre, Direccion, Telefono, Email, Contacto, InicioAct, id_Dpto
From Imp_Sucursales;

@ARCHIVO
Tabla=Imp_Sucursales
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Sucursal:entero
Columna=Nombre:texto
Columna=Direccion:texto
Columna=Telefono:texto
Columna=Email:texto
Columna=Contacto:texto
Columna=InicioAct:fecha:yyyy-MM-dd
Columna=id_Dpto:entero
