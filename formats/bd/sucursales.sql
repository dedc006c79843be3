-- bd/sucursales.sql: copies the table Sucursales of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Sucursales.

Insert into Sucursales (
  id_Sucursal, Nombre, Direccion, Telefono, Email, Contacto, InicioAct, id_Dpto)
Select
  id_Sucursal, Nombre, Direccion, Telefono, Email, Contacto, InicioAct, id_Dpto
From Sucursales in '[BDOrigen]';
